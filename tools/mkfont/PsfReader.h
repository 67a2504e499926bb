#ifndef VANTOR_MKFONT_PSFREADER_H
#define VANTOR_MKFONT_PSFREADER_H

#include <map>
#include <string>

#include "GlyphSet.h"

namespace VantorFont {

// Linux console fonts, PSF1 and PSF2, plain or gzipped. FreeType does not read them.
class PsfReader : public GlyphSource {
  public:
    explicit PsfReader(const std::string& path);  // throws Refusal
    static bool LooksLikePsf(const std::string& path);

    int Width() const override { return width; }
    int Height() const override { return height; }
    bool HasUnicode() const override { return !unicode.empty(); }
    bool Render(uint32_t character, std::vector<uint8_t>& bits) override;

  private:
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
