// SPDX-License-Identifier: MIT
#ifndef VANTOR_MKFONT_FREETYPEREADER_H
#define VANTOR_MKFONT_FREETYPEREADER_H

#include <ft2build.h>
#include FT_FREETYPE_H

#include <string>

#include "GlyphSource.h"

namespace VantorFont {

// Every font FreeType reads: bitmap strikes (BDF, PCF, PCF.gz, OTB) as drawn, outlines
// rendered black and white at the largest size whose line fits the asked cell.
class FreeTypeReader : public GlyphSource {
  public:
    // width and height 0 mean "the font's own": a bitmap font's strike decides the cell;
    // an outline font needs at least a height. Throws Refusal.
    FreeTypeReader(const std::string& path, int width, int height);
    ~FreeTypeReader() override;
    FreeTypeReader(const FreeTypeReader&) = delete;
    FreeTypeReader& operator=(const FreeTypeReader&) = delete;

    int Height() const override { return cellHeight; }
    int Baseline() const override { return baseline; }
    int Advance() const override;
    bool HasUnicode() const override { return unicode; }
    void Prepare(const std::vector<uint32_t>& keys) override;
    int PixelsPerEm() const override { return pixelsPerEm; }
    void UsePixelsPerEm(int pixels) override;
    bool Load(uint32_t key, Ink& ink) override;
    std::vector<std::string> Notes() const override;

  private:
    void SelectCharmap();
    void SelectStrike(int height);
    bool Fits(const std::vector<uint32_t>& keys) const;
    int WidestInk(const std::vector<uint32_t>& keys) const;
    void Render(FT_UInt index) const;
    void CentreLine();

    FT_Library library = nullptr;
    FT_Face face = nullptr;
    bool unicode = false;
    int askedWidth = 0;
    int cellHeight = 0;
    int pixelsPerEm = 0;  // outlines only
    int baseline = 0;
};

}  // namespace VantorFont

#endif
