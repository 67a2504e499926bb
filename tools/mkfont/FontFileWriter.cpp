// SPDX-License-Identifier: MIT
#include "FontFileWriter.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>

namespace VantorFont {

namespace {

void PutInt(std::vector<uint8_t>& out, int32_t value) {
    const uint32_t bits = uint32_t(value);
    for (int shift = 0; shift < 32; shift += 8) out.push_back(uint8_t(bits >> shift));
}

bool WriteAll(int fd, const std::vector<uint8_t>& data) {
    size_t done = 0;
    while (done < data.size()) {
        const ssize_t n = write(fd, data.data() + done, data.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += size_t(n);
    }
    return true;
}

}  // namespace

std::vector<uint8_t> FontFileWriter::Encode(const GlyphSet& set) {
    // The library refuses a bitmap table whose size does not fit a signed 32-bit count.
    const long long bytes = (long long)set.Count() * set.Width() * set.Height();
    if (bytes > std::numeric_limits<int32_t>::max()) throw Refusal("the font is too large");
    std::vector<uint8_t> out(12, 0);  // magic, its zero byte and three unused bytes
    std::memcpy(out.data(), "tinyfont", 8);
    PutInt(out, int32_t(set.Count()));
    PutInt(out, set.Height());
    PutInt(out, set.Width());
    for (const auto& entry : set.Glyphs()) PutInt(out, entry.first);
    for (const auto& entry : set.Glyphs()) {
        out.insert(out.end(), entry.second.begin(), entry.second.end());
    }
    return out;
}

void FontFileWriter::Write(const GlyphSet& set) const {
    if (set.Count() == 0) throw Refusal("no glyph to write: the font has none of the asked codes");
    const std::vector<uint8_t> data = Encode(set);
    // Same directory, so the rename cannot cross file systems.
    std::string temporary = DirectoryOfPath() + "/.vantor-mkfont-XXXXXX";
    const int fd = mkstemp(&temporary[0]);
    if (fd < 0) throw Refusal("cannot write in the directory of " + path + ": " + strerror(errno));
    // Flushed before the rename so a power cut cannot leave an empty font under the name.
    const bool written = WriteAll(fd, data) && fchmod(fd, 0644) == 0 && fsync(fd) == 0;
    if (close(fd) != 0 || !written || std::rename(temporary.c_str(), path.c_str()) != 0) {
        const int saved = errno;
        unlink(temporary.c_str());
        throw Refusal("cannot write " + path + ": " + strerror(saved));
    }
}

std::string FontFileWriter::DirectoryOfPath() const {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace VantorFont
