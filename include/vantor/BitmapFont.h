// SPDX-License-Identifier: MIT
#ifndef VANTOR_BITMAPFONT_H
#define VANTOR_BITMAPFONT_H

#include <stdint.h>

#include <vector>

#include "vantor/Export.h"

namespace Vantor {

// The first 24 bytes of a font file, kept as they were read.
struct VANTOR_API CFontHeader {
    char magic[12];
    int32_t glyphCount;
    int32_t glyphHeight;
    int32_t glyphWidth;
};

// A fixed-cell bitmap font: a table of character codes and one W x H byte map per
// glyph (0 is background, anything else foreground).
class VANTOR_API CBitmapFont {
  public:
    CBitmapFont();
    explicit CBitmapFont(const char* fileName);
    virtual ~CBitmapFont();
    CBitmapFont(const CBitmapFont&) = delete;
    CBitmapFont& operator=(const CBitmapFont&) = delete;

    // Loads a font file; throws std::runtime_error on every failure and then keeps
    // whatever it held before.
    int ReadFont(const char* fileName);
    int getIndexFromCode(int code) const;
    unsigned char* getGlyphFromIndex(int index) const;
    unsigned char* getGlyphFromCode(int code) const;

    char* pFileName;
    CFontHeader header;
    int32_t* pGlyphCodes;
    unsigned char* pGlyphBitmaps;

  private:
    void BuildCodeIndex();

    // Glyph index of every Unicode code (-1 when the font lacks it), so drawing a
    // character does not scan the code table: the codes up to the font's highest one
    // in blocks of 256, each block naming its page of indices. Blocks without glyphs
    // share the empty page 0, so a font costs one page per block it has glyphs in.
    std::vector<uint16_t> pageOfBlock;
    std::vector<int32_t> pages;
};

}  // namespace Vantor

#endif
