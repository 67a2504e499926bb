#include "FontFileWriter.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <limits>

namespace VantorFont {

namespace {

void PutInt(std::vector<uint8_t>& out, int32_t value) {
    const uint32_t bits = uint32_t(value);
    for (int shift = 0; shift < 32; shift += 8) out.push_back(uint8_t(bits >> shift));
}

std::vector<uint8_t> Encode(const GlyphSet& set) {
    std::vector<uint8_t> out(12, 0);
    std::memcpy(out.data(), "tinyfont", 9);
    PutInt(out, int32_t(set.glyphs.size()));
    PutInt(out, set.height);
    PutInt(out, set.width);
    for (const auto& entry : set.glyphs) PutInt(out, entry.first);
    for (const auto& entry : set.glyphs)
        out.insert(out.end(), entry.second.begin(), entry.second.end());
    return out;
}

std::string DirectoryOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace

void WriteFontFile(const std::string& path, const GlyphSet& set) {
    if (set.glyphs.empty())
        throw Refusal("no glyph to write: the font has none of the asked codes");
    const long long bytes = (long long)set.glyphs.size() * set.width * set.height;
    if (bytes > std::numeric_limits<int32_t>::max()) throw Refusal("the font is too large");
    const std::vector<uint8_t> data = Encode(set);

    std::string temporary = DirectoryOf(path) + "/.vantor-mkfont-XXXXXX";
    const int fd = mkstemp(&temporary[0]);
    if (fd < 0) throw Refusal("cannot write in the directory of " + path);
    const bool written = write(fd, data.data(), data.size()) == ssize_t(data.size());
    const bool closed = fchmod(fd, 0644) == 0 && close(fd) == 0;
    if (!written || !closed || std::rename(temporary.c_str(), path.c_str()) != 0) {
        unlink(temporary.c_str());
        throw Refusal("cannot write " + path);
    }
}

}  // namespace VantorFont
