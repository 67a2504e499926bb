#include "FreeTypeReader.h"

#include <cstdio>
#include <cstdlib>

namespace VantorFont {

namespace {

std::string Hex(uint32_t character) {
    char text[16];
    std::snprintf(text, sizeof(text), "U+%04X", character);
    return text;
}

}  // namespace

FreeTypeReader::FreeTypeReader(const std::string& path, int width, int height) {
    if (FT_Init_FreeType(&library) != 0) throw Refusal("cannot start FreeType");
    if (FT_New_Face(library, path.c_str(), 0, &face) != 0) {
        FT_Done_FreeType(library);
        throw Refusal("cannot read font file " + path + " (missing, or not a font FreeType knows)");
    }
    try {
        FT_Select_Charmap(face, FT_ENCODING_UNICODE);
        if (FT_IS_SCALABLE(face)) {
            SizeOutlines(width, height);
        } else {
            SelectStrike(width, height);
        }
    } catch (...) {
        FT_Done_Face(face);
        FT_Done_FreeType(library);
        throw;
    }
}

FreeTypeReader::~FreeTypeReader() {
    FT_Done_Face(face);
    FT_Done_FreeType(library);
}

// A bitmap font is converted as drawn: its strike decides the cell unless the user
// asks for a particular one among several.
void FreeTypeReader::SelectStrike(int width, int height) {
    if (face->num_fixed_sizes < 1) throw Refusal("the font has neither outlines nor bitmaps");
    int chosen = 0;
    for (int i = 0; i < face->num_fixed_sizes; ++i) {
        if (height > 0 && face->available_sizes[i].height == height) chosen = i;
    }
    if (FT_Select_Size(face, chosen) != 0) throw Refusal("cannot select the font's bitmap size");
    const FT_Bitmap_Size& strike = face->available_sizes[chosen];
    cellHeight = height > 0 ? height : strike.height;
    cellWidth = width > 0 ? width : int(face->size->metrics.max_advance >> 6);
    if (cellWidth <= 0) cellWidth = strike.width;
    baseline = int(face->size->metrics.ascender >> 6);
    if (baseline <= 0) baseline = cellHeight * 3 / 4;
}

void FreeTypeReader::SizeOutlines(int width, int height) {
    if (height <= 0) throw Refusal("an outline font needs a cell size: --size WIDTHxHEIGHT");
    if (FT_Set_Pixel_Sizes(face, 0, FT_UInt(height)) != 0) {
        throw Refusal("cannot render the font at " + std::to_string(height) + " pixels");
    }
    cellHeight = height;
    cellWidth = width > 0 ? width : int(face->size->metrics.max_advance >> 6);
    // Centre the font's own line height in the cell.
    const int ascender = int(face->size->metrics.ascender >> 6);
    const int descender = int(-face->size->metrics.descender >> 6);
    baseline = ascender + (cellHeight - ascender - descender) / 2;
}

bool FreeTypeReader::Render(uint32_t character, std::vector<uint8_t>& bits) {
    const FT_UInt index = FT_Get_Char_Index(face, character);
    if (index == 0) return false;
    if (FT_Load_Glyph(face, index, FT_LOAD_RENDER | FT_LOAD_TARGET_MONO | FT_LOAD_MONOCHROME) !=
        0) {
        return false;
    }
    const FT_GlyphSlot slot = face->glyph;
    const FT_Bitmap& bitmap = slot->bitmap;
    const int left = slot->bitmap_left;
    if (left < 0 || left + int(bitmap.width) > cellWidth) {
        throw Refusal("glyph " + Hex(character) + " is wider than the " +
                      std::to_string(cellWidth) +
                      "-pixel cell (a proportional font? give a wider --size)");
    }
    bits.assign(size_t(cellWidth) * cellHeight, 0);
    const int top = baseline - slot->bitmap_top;
    for (int r = 0; r < int(bitmap.rows); ++r) {
        const int row = top + r;
        const unsigned char* line = bitmap.buffer + r * bitmap.pitch;
        bool inked = false;
        for (int c = 0; c < int(bitmap.width); ++c) inked |= (line[c / 8] >> (7 - c % 8)) & 1;
        if (row < 0 || row >= cellHeight) {
            clippedRows += inked;
            continue;
        }
        for (int c = 0; c < int(bitmap.width); ++c) {
            bits[size_t(row) * cellWidth + left + c] = (line[c / 8] >> (7 - c % 8)) & 1;
        }
    }
    return true;
}

}  // namespace VantorFont
