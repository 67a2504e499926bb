// SPDX-License-Identifier: MIT
#include "FontFixtures.h"

#include <cstdio>
#include <fstream>

#include "vantor/BitmapFont.h"

namespace MkfontTest {

namespace {

bool Bit(int character, int row, int column) {
    return ((character * 7 + 3) >> ((row + column) % 9)) & 1;
}

uint8_t PatternRow(int character, int row) {
    uint8_t bits = 0;
    for (int c = 0; c < 5; ++c) bits |= uint8_t(Bit(character, row, c) << (7 - c));
    return bits;
}

void Put32(std::string& out, uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) out += char(value >> shift);
}

std::string Utf8(int c) {
    if (c < 0x80) return {char(c)};
    if (c < 0x800) return {char(0xC0 | c >> 6), char(0x80 | (c & 0x3F))};
    return {char(0xE0 | c >> 12), char(0x80 | (c >> 6 & 0x3F)), char(0x80 | (c & 0x3F))};
}

}  // namespace

std::string Bdf(const std::vector<int>& characters) {
    std::string text =
        "STARTFONT 2.1\nFONT -test-fixed-medium-r-normal--7-70-75-75-c-50-iso10646-1\n"
        "SIZE 7 75 75\nFONTBOUNDINGBOX 5 7 0 -1\nSTARTPROPERTIES 5\nSPACING \"C\"\n"
        "CHARSET_REGISTRY \"ISO10646\"\nCHARSET_ENCODING \"1\"\nFONT_ASCENT 6\nFONT_DESCENT "
        "1\nENDPROPERTIES\nCHARS " +
        std::to_string(characters.size()) + "\n";
    for (int character : characters) {
        text += "STARTCHAR c" + std::to_string(character) + "\nENCODING " +
                std::to_string(character) + "\nSWIDTH 500 0\nDWIDTH 5 0\nBBX 5 7 0 -1\nBITMAP\n";
        for (int r = 0; r < 7; ++r) {
            char hex[8];
            std::snprintf(hex, sizeof(hex), "%02X\n", PatternRow(character, r));
            text += hex;
        }
        text += "ENDCHAR\n";
    }
    return text + "ENDFONT\n";
}

std::string Psf2(const std::vector<int>& characters, bool table) {
    std::string data;
    for (uint32_t field :
         {0x864AB572u, 0u, 32u, table ? 1u : 0u, uint32_t(characters.size()), 7u, 7u, 5u}) {
        Put32(data, field);
    }
    for (int character : characters) {
        for (int r = 0; r < 7; ++r) data += char(PatternRow(character, r));
    }
    for (int character : characters) data += table ? Utf8(character) + char(0xFF) : "";
    return data;
}

std::string Psf1() {
    std::string data = {0x36, 0x04, 0x00, 0x08};  // 256 glyphs of 8 rows, no table
    for (int glyph = 0; glyph < 256; ++glyph) {
        for (int r = 0; r < 8; ++r) data += char(r < 7 ? PatternRow(glyph, r) : 0);
    }
    return data;
}

void Mkfont::Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(Path(name), std::ios::binary) << bytes;
}

void Mkfont::ExpectPattern(const std::string& font, const std::vector<int>& codes,
                           const std::vector<int>& characters, int columnOffset) const {
    Vantor::CBitmapFont loaded(font.c_str());
    const int w = loaded.header.glyphWidth;
    ASSERT_EQ(int(codes.size()), loaded.header.glyphCount);
    for (size_t i = 0; i < codes.size(); ++i) {
        const unsigned char* bits = loaded.getGlyphFromCode(codes[i]);
        ASSERT_NE(nullptr, bits) << "code " << codes[i];
        for (int r = 0; r < loaded.header.glyphHeight; ++r) {
            for (int c = 0; c < w; ++c) {
                const int x = c - columnOffset;
                const bool expected = r < 7 && x >= 0 && x < 5 && Bit(characters[i], r, x);
                ASSERT_EQ(expected, bits[r * w + c] != 0)
                    << "code " << codes[i] << " " << r << "," << c;
            }
        }
    }
}

}  // namespace MkfontTest
