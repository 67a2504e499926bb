// SPDX-License-Identifier: MIT
#include "PsfReader.h"

#include <zlib.h>

#include <cstring>

#include "Refusal.h"

namespace VantorFont {

namespace {

const uint8_t kPsf1Magic[] = {0x36, 0x04};
const uint8_t kPsf2Magic[] = {0x72, 0xB5, 0x4A, 0x86};
const uint32_t kMaxCell = 256;  // the largest cell --size accepts too

// gzread passes files that are not compressed through unchanged.
std::vector<uint8_t> ReadAll(const std::string& path) {
    gzFile file = gzopen(path.c_str(), "rb");
    if (file == nullptr) throw Refusal("cannot open font file " + path);
    std::vector<uint8_t> data;
    uint8_t chunk[65536];
    int got;
    while ((got = gzread(file, chunk, sizeof(chunk))) > 0)
        data.insert(data.end(), chunk, chunk + got);
    gzclose(file);
    if (got < 0) throw Refusal("cannot read font file " + path);
    return data;
}

uint32_t Le32(const std::vector<uint8_t>& data, size_t at) {
    return uint32_t(data[at]) | uint32_t(data[at + 1]) << 8 | uint32_t(data[at + 2]) << 16 |
           uint32_t(data[at + 3]) << 24;
}

// One UTF-8 character starting at `at`; advances past it. Returns false at a marker byte.
bool NextUtf8(const std::vector<uint8_t>& data, size_t& at, uint32_t& character) {
    const uint8_t lead = data[at];
    if (lead == 0xFE || lead == 0xFF) return false;
    int extra = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
    character = extra == 0 ? lead : lead & (0x3F >> extra);
    ++at;
    for (; extra > 0 && at < data.size(); --extra) character = character << 6 | (data[at++] & 0x3F);
    return true;
}

}  // namespace

bool PsfReader::LooksLikePsf(const std::string& path) {
    gzFile file = gzopen(path.c_str(), "rb");
    if (file == nullptr) return false;
    uint8_t head[4] = {};
    const int got = gzread(file, head, 4);
    gzclose(file);
    return (got >= 2 && std::memcmp(head, kPsf1Magic, 2) == 0) ||
           (got == 4 && std::memcmp(head, kPsf2Magic, 4) == 0);
}

PsfReader::PsfReader(const std::string& path) {
    const std::vector<uint8_t> data = ReadAll(path);
    if (data.size() >= 4 && std::memcmp(data.data(), kPsf2Magic, 4) == 0) {
        ReadPsf2(data);
    } else if (data.size() >= 4 && std::memcmp(data.data(), kPsf1Magic, 2) == 0) {
        ReadPsf1(data);
    } else {
        throw Refusal(path + " is not a PSF console font");
    }
}

void PsfReader::ReadPsf1(const std::vector<uint8_t>& data) {
    const uint8_t mode = data[2];
    width = 8;
    height = data[3];
    count = (mode & 0x01) ? 512 : 256;
    bytesPerGlyph = size_t(height);
    CheckSize(data.size() - 4);
    const size_t end = 4 + bytesPerGlyph * size_t(count);
    bitmaps.assign(data.begin() + 4, data.begin() + long(end));
    if (mode & 0x06) ReadUnicodeTable1(data, end);  // a table, or a table with sequences
}

void PsfReader::ReadPsf2(const std::vector<uint8_t>& data) {
    if (data.size() < 32) throw Refusal("PSF2 header is truncated");
    const uint32_t headerSize = Le32(data, 8), flags = Le32(data, 12);
    const uint32_t glyphs = Le32(data, 16), rows = Le32(data, 24), columns = Le32(data, 28);
    bytesPerGlyph = Le32(data, 20);
    // Taken as unsigned and bounded before any arithmetic, so no field can overflow it.
    if (headerSize < 32 || headerSize > data.size() || glyphs > 65536 || rows > kMaxCell ||
        columns > kMaxCell) {
        throw Refusal("PSF2 header is inconsistent");
    }
    count = int(glyphs);
    height = int(rows);
    width = int(columns);
    CheckSize(data.size() - headerSize);
    const size_t end = headerSize + bytesPerGlyph * size_t(count);
    bitmaps.assign(data.begin() + headerSize, data.begin() + long(end));
    if (flags & 1) ReadUnicodeTable2(data, end);
}

// Whether the header's glyphs are sane and `available` bytes hold them.
void PsfReader::CheckSize(size_t available) const {
    if (width < 1 || height < 1 || count < 1) throw Refusal("the PSF font has no glyphs");
    if (bytesPerGlyph < size_t((width + 7) / 8) * size_t(height) || bytesPerGlyph > 65536) {
        throw Refusal("PSF glyph size does not match its width and height");
    }
    if (available / bytesPerGlyph < size_t(count)) throw Refusal("the PSF font is truncated");
}

// PSF1: per glyph, 16-bit characters ended by 0xFFFF; 0xFFFE starts combining sequences,
// which a fixed-cell 8-bit font cannot use and skips.
void PsfReader::ReadUnicodeTable1(const std::vector<uint8_t>& data, size_t at) {
    for (int glyph = 0; glyph < count && at + 1 < data.size(); ++glyph) {
        bool sequence = false;
        for (; at + 1 < data.size(); at += 2) {
            const uint32_t value = data[at] | uint32_t(data[at + 1]) << 8;
            if (value == 0xFFFF) break;
            if (value == 0xFFFE) sequence = true;
            if (!sequence) unicode.emplace(value, glyph);
        }
        at += 2;
    }
}

// PSF2: per glyph, UTF-8 characters ended by 0xFF; 0xFE starts sequences.
void PsfReader::ReadUnicodeTable2(const std::vector<uint8_t>& data, size_t at) {
    for (int glyph = 0; glyph < count && at < data.size(); ++glyph) {
        uint32_t character = 0;
        while (at < data.size() && NextUtf8(data, at, character)) unicode.emplace(character, glyph);
        while (at < data.size() && data[at] != 0xFF) ++at;
        ++at;
    }
}

bool PsfReader::Load(uint32_t key, Ink& ink) {
    int glyph = int(key);
    if (HasUnicode()) {
        const auto found = unicode.find(key);
        if (found == unicode.end()) return false;
        glyph = found->second;
    }
    if (glyph < 0 || glyph >= count) return false;
    const uint8_t* source = bitmaps.data() + bytesPerGlyph * size_t(glyph);
    const int rowBytes = (width + 7) / 8;
    ink = Ink{width, height, 0, height, width, std::vector<uint8_t>(size_t(width) * height)};
    for (int r = 0; r < height; ++r) {
        for (int c = 0; c < width; ++c) {
            ink.bits[size_t(r) * width + c] = (source[r * rowBytes + c / 8] >> (7 - c % 8)) & 1;
        }
    }
    return true;
}

std::vector<std::string> PsfReader::Notes() const {
    if (HasUnicode()) return {};
    return {"the font has no Unicode table: codes are glyph positions, no code page"};
}

}  // namespace VantorFont
