#ifndef VANTOR_MKFONT_FREETYPEREADER_H
#define VANTOR_MKFONT_FREETYPEREADER_H

#include <ft2build.h>
#include FT_FREETYPE_H

#include <string>

#include "GlyphSet.h"

namespace VantorFont {

// Every font FreeType reads: bitmap strikes (BDF, PCF, PCF.gz, OTB) as drawn, outlines
// rendered in black and white at the asked cell height.
class FreeTypeReader : public GlyphSource {
  public:
    // width and height 0 take the font's own cell (bitmap fonts) or are required (outlines).
    FreeTypeReader(const std::string& path, int width, int height);  // throws Refusal
    ~FreeTypeReader() override;
    FreeTypeReader(const FreeTypeReader&) = delete;
    FreeTypeReader& operator=(const FreeTypeReader&) = delete;

    int Width() const override { return cellWidth; }
    int Height() const override { return cellHeight; }
    bool HasUnicode() const override { return true; }
    bool Render(uint32_t character, std::vector<uint8_t>& bits) override;

    int clippedRows = 0;  // glyph rows that fell above or below the cell

  private:
    void SelectStrike(int width, int height);
    void SizeOutlines(int width, int height);

    FT_Library library = nullptr;
    FT_Face face = nullptr;
    int cellWidth = 0;
    int cellHeight = 0;
    int baseline = 0;
};

}  // namespace VantorFont

#endif
