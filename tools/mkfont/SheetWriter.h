#ifndef VANTOR_MKFONT_SHEETWRITER_H
#define VANTOR_MKFONT_SHEETWRITER_H

#include <string>

namespace Vantor {
class CBitmapFont;
}

namespace VantorFont {

// Draws every glyph of a font as a PNG: 16 cells a row for codes 0 to 255 (row = high
// nibble, column = low nibble), ink black on white, cells separated by grey lines, each
// pixel drawn as scale x scale pixels. Codes the font lacks stay light grey.
void WriteSheet(const Vantor::CBitmapFont& font, const std::string& path, int scale);

}  // namespace VantorFont

#endif
