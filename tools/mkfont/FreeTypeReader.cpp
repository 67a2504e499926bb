// SPDX-License-Identifier: MIT
#include "FreeTypeReader.h"

#include "Refusal.h"

namespace VantorFont {

namespace {

// Whole pixels from FreeType's 26.6 fixed point, rounded outward.
int Ceil(FT_Pos value) {
    return int((value + 63) >> 6);
}

// Embedded bitmaps come as they were stored: one bit a pixel, or grey levels in some OTB
// fonts, which are taken as ink from half on.
bool Pixel(const FT_Bitmap& bitmap, int row, int column) {
    const unsigned char* line = bitmap.buffer + row * bitmap.pitch;
    if (bitmap.pixel_mode == FT_PIXEL_MODE_MONO) return (line[column / 8] >> (7 - column % 8)) & 1;
    return line[column] >= 128;
}

}  // namespace

FreeTypeReader::FreeTypeReader(const std::string& path, int width, int height) {
    if (FT_Init_FreeType(&library) != 0) throw Refusal("cannot start FreeType");
    if (FT_New_Face(library, path.c_str(), 0, &face) != 0) {
        FT_Done_FreeType(library);
        throw Refusal("cannot read font file " + path + " (missing, or not a font FreeType knows)");
    }
    try {
        SelectCharmap();
        askedWidth = width;
        cellHeight = height;
        if (!FT_IS_SCALABLE(face)) {
            SelectStrike(height);
        } else if (height <= 0) {
            throw Refusal("an outline font needs a cell size: --size WIDTHxHEIGHT or HEIGHT");
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

// Without a Unicode map (a KOI8-R PCF, say) codes go to the font's own encoding, which
// FreeType leaves unselected.
void FreeTypeReader::SelectCharmap() {
    unicode = FT_Select_Charmap(face, FT_ENCODING_UNICODE) == 0;
    if (!unicode && face->num_charmaps > 0) FT_Set_Charmap(face, face->charmaps[0]);
}

// A bitmap font is converted as drawn, so a height picks one of its strikes and never
// scales one.
void FreeTypeReader::SelectStrike(int height) {
    if (face->num_fixed_sizes < 1) throw Refusal("the font has neither outlines nor bitmaps");
    int chosen = height > 0 ? -1 : 0;
    std::string heights;
    for (int i = 0; i < face->num_fixed_sizes; ++i) {
        if (face->available_sizes[i].height == height) chosen = i;
        heights += " " + std::to_string(face->available_sizes[i].height);
    }
    if (chosen < 0) {
        throw Refusal("the bitmap font has no " + std::to_string(height) +
                      "-pixel size (it has:" + heights + "); omit --size or pick one of those");
    }
    if (FT_Select_Size(face, chosen) != 0) throw Refusal("cannot select the font's bitmap size");
    cellHeight = face->available_sizes[chosen].height;
    baseline = int(face->size->metrics.ascender >> 6);
}

// Outlines are drawn at the largest size at which the font's line (ascender to descender)
// fits the cell height and, for a fixed-width font given a cell width, its advance and
// every asked glyph fit that width: bold glyphs often reach a pixel past the advance.
void FreeTypeReader::Prepare(const std::vector<uint32_t>& keys) {
    if (!FT_IS_SCALABLE(face)) return;
    for (pixelsPerEm = cellHeight; pixelsPerEm > 0; --pixelsPerEm) {
        if (FT_Set_Pixel_Sizes(face, 0, FT_UInt(pixelsPerEm)) == 0 && Fits(keys)) break;
    }
    if (pixelsPerEm == 0) {
        throw Refusal("the font does not fit the cell at any size");
    }
    CentreLine();
}

void FreeTypeReader::UsePixelsPerEm(int pixels) {
    if (!FT_IS_SCALABLE(face) || pixels <= 0 || pixels == pixelsPerEm) return;
    if (FT_Set_Pixel_Sizes(face, 0, FT_UInt(pixels)) != 0) {
        throw Refusal("cannot draw the font at " + std::to_string(pixels) + " pixels per em");
    }
    pixelsPerEm = pixels;
    CentreLine();
}

void FreeTypeReader::CentreLine() {
    const FT_Size_Metrics& metrics = face->size->metrics;
    const int line = Ceil(metrics.ascender) + Ceil(-metrics.descender);
    baseline = Ceil(metrics.ascender) + (cellHeight - line) / 2;
}

bool FreeTypeReader::Fits(const std::vector<uint32_t>& keys) const {
    const FT_Size_Metrics& metrics = face->size->metrics;
    if (Ceil(metrics.ascender) + Ceil(-metrics.descender) > cellHeight) return false;
    if (askedWidth == 0 || Advance() == 0) return true;  // proportional: judged glyph by glyph
    return Advance() <= askedWidth && WidestInk(keys) <= askedWidth;
}

int FreeTypeReader::WidestInk(const std::vector<uint32_t>& keys) const {
    int widest = 0;
    for (uint32_t key : keys) {
        const FT_UInt index = FT_Get_Char_Index(face, key);
        if (index == 0) continue;
        Render(index);
        if (int(face->glyph->bitmap.width) > widest) widest = int(face->glyph->bitmap.width);
    }
    return widest;
}

void FreeTypeReader::Render(FT_UInt index) const {
    if (FT_Load_Glyph(face, index, FT_LOAD_RENDER | FT_LOAD_TARGET_MONO | FT_LOAD_MONOCHROME)) {
        throw Refusal("FreeType cannot draw glyph " + std::to_string(index) + " of the font");
    }
}

int FreeTypeReader::Advance() const {
    return FT_IS_FIXED_WIDTH(face) ? Ceil(face->size->metrics.max_advance) : 0;
}

bool FreeTypeReader::Load(uint32_t key, Ink& ink) {
    const FT_UInt index = FT_Get_Char_Index(face, key);
    if (index == 0) return false;
    Render(index);
    const FT_GlyphSlot slot = face->glyph;
    const FT_Bitmap& bitmap = slot->bitmap;
    if (bitmap.pixel_mode != FT_PIXEL_MODE_MONO && bitmap.pixel_mode != FT_PIXEL_MODE_GRAY) {
        throw Refusal("the font's bitmaps are in colour, which a one-bit font cannot hold");
    }
    ink.width = int(bitmap.width);
    ink.height = int(bitmap.rows);
    ink.left = slot->bitmap_left;
    ink.top = slot->bitmap_top;
    ink.advance = int((slot->advance.x + 32) >> 6);
    ink.bits.resize(size_t(ink.width) * ink.height);
    for (int r = 0; r < ink.height; ++r) {
        for (int c = 0; c < ink.width; ++c) {
            ink.bits[size_t(r) * ink.width + c] = Pixel(bitmap, r, c);
        }
    }
    return true;
}

std::vector<std::string> FreeTypeReader::Notes() const {
    std::vector<std::string> notes;
    if (!unicode) notes.push_back("the font has no Unicode map: codes are its own, no code page");
    if (pixelsPerEm > 0)
        notes.push_back("outlines drawn at " + std::to_string(pixelsPerEm) + " pixels per em");
    return notes;
}

}  // namespace VantorFont
