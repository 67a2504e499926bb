// SPDX-License-Identifier: MIT
#ifndef VANTOR_MKFONT_CELLPLACER_H
#define VANTOR_MKFONT_CELLPLACER_H

#include <cstdint>
#include <string>
#include <vector>

#include "Ink.h"

namespace VantorFont {

// Puts ink into the fixed cell on a common baseline, with the glyph's advance centred
// (a proportional font's narrow glyphs then sit in the middle of the cell). Ink that
// hangs over a side but is no wider than the cell is moved in rather than cut off; ink
// wider than the cell cannot be kept and is refused. Rows above or below the cell are
// cut off and counted, since small outline sizes put accents there.
class CellPlacer {
  public:
    CellPlacer(int width, int height, int baseline)
        : width(width), height(height), baseline(baseline) {}

    std::vector<uint8_t> Place(const Ink& ink, const std::string& name);  // throws Refusal
    int ClippedRows() const { return clippedRows; }
    int MovedGlyphs() const { return movedGlyphs; }

  private:
    int Column(const Ink& ink);

    int width;
    int height;
    int baseline;
    int clippedRows = 0;
    int movedGlyphs = 0;
};

}  // namespace VantorFont

#endif
