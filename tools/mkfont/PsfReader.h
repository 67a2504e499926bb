// SPDX-License-Identifier: MIT
#ifndef VANTOR_MKFONT_PSFREADER_H
#define VANTOR_MKFONT_PSFREADER_H

#include <map>
#include <string>
#include <vector>

#include "GlyphSource.h"

namespace VantorFont {

// Linux console fonts, PSF1 and PSF2, plain or gzipped. FreeType does not read them.
class PsfReader : public GlyphSource {
  public:
    explicit PsfReader(const std::string& path);  // throws Refusal
    static bool LooksLikePsf(const std::string& path);

    int Height() const override { return height; }
    int Baseline() const override { return height; }  // ink is the whole cell, top at 0
    int Advance() const override { return width; }
    bool HasUnicode() const override { return !unicode.empty(); }
    bool Load(uint32_t key, Ink& ink) override;
    std::vector<std::string> Notes() const override;

  private:
    void CheckSize(size_t available) const;
    void ReadPsf1(const std::vector<uint8_t>& data);
    void ReadPsf2(const std::vector<uint8_t>& data);
    void ReadUnicodeTable1(const std::vector<uint8_t>& data, size_t offset);
    void ReadUnicodeTable2(const std::vector<uint8_t>& data, size_t offset);

    int width = 0;
    int height = 0;
    int count = 0;
    size_t bytesPerGlyph = 0;
    std::vector<uint8_t> bitmaps;
    std::map<uint32_t, int> unicode;  // character to glyph position
};

}  // namespace VantorFont

#endif
