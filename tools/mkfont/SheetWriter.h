// SPDX-License-Identifier: MIT
#ifndef VANTOR_MKFONT_SHEETWRITER_H
#define VANTOR_MKFONT_SHEETWRITER_H

#include <cstdint>
#include <string>
#include <vector>

namespace Vantor {
class CBitmapFont;
}

namespace VantorFont {

// Draws a whole font as a greyscale PNG so a user can see what it holds: 16 cells a row
// for codes 0 to 255 (row = high hex digit, column = low), ink black on white, cells
// separated by one-pixel grey lines, each font pixel drawn as scale x scale pixels.
// Codes the font lacks stay light grey.
class SheetWriter {
  public:
    static constexpr uint8_t kPaper = 255, kInk = 0, kGrid = 160, kMissing = 224;

    SheetWriter(const Vantor::CBitmapFont& font, int scale);  // throws Refusal
    void Write(const std::string& path) const;                // throws Refusal

  private:
    void DrawCell(int code);
    void Fill(int x, int y, int w, int h, uint8_t value);

    const Vantor::CBitmapFont& font;
    int scale;
    int cellWidth = 0;
    int cellHeight = 0;
    int width = 0;
    int height = 0;
    std::vector<uint8_t> grey;
};

}  // namespace VantorFont

#endif
