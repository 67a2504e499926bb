// SPDX-License-Identifier: MIT
#ifndef VANTOR_MKFONT_TEXTART_H
#define VANTOR_MKFONT_TEXTART_H

#include <string>

namespace Vantor {
class CBitmapFont;
}

namespace VantorFont {

// A font file shown in a terminal: its header, and glyphs with '#' for ink and '.' for
// background, one text line per pixel row.
class TextArt {
  public:
    explicit TextArt(const Vantor::CBitmapFont& font) : font(font) {}
    std::string Header() const;
    // The glyph under a caption; for a code the font lacks, the caption says so.
    std::string Glyph(int code) const;

  private:
    const Vantor::CBitmapFont& font;
};

}  // namespace VantorFont

#endif
