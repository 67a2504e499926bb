// SPDX-License-Identifier: MIT
#include "CellPlacer.h"

#include "Refusal.h"

namespace VantorFont {

std::vector<uint8_t> CellPlacer::Place(const Ink& ink, const std::string& name) {
    if (ink.width > width) {
        throw Refusal("glyph " + name + " is " + std::to_string(ink.width) +
                      " pixels wide, wider than the " + std::to_string(width) +
                      "-pixel cell (a proportional font? give a wider --size WIDTHxHEIGHT)");
    }
    std::vector<uint8_t> cell(size_t(width) * height, 0);
    const int x = Column(ink);
    const int y = baseline - ink.top;
    for (int r = 0; r < ink.height; ++r) {
        const uint8_t* line = ink.bits.data() + size_t(r) * ink.width;
        if (y + r < 0 || y + r >= height) {
            for (int c = 0; c < ink.width; ++c) {
                if (line[c]) {
                    ++clippedRows;
                    break;
                }
            }
            continue;
        }
        for (int c = 0; c < ink.width; ++c) cell[size_t(y + r) * width + x + c] = line[c];
    }
    return cell;
}

// Where the ink's left column goes, kept inside the cell.
int CellPlacer::Column(const Ink& ink) {
    const int wanted = (width - ink.advance) / 2 + ink.left;
    const int column = wanted < 0 ? 0 : wanted + ink.width > width ? width - ink.width : wanted;
    if (column != wanted && ink.width > 0) ++movedGlyphs;
    return column;
}

}  // namespace VantorFont
