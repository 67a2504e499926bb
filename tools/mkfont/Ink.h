// SPDX-License-Identifier: MIT
#ifndef VANTOR_MKFONT_INK_H
#define VANTOR_MKFONT_INK_H

#include <cstdint>
#include <vector>

namespace VantorFont {

// One glyph as a font draws it, before it is put into the fixed cell: a box of width x
// height bytes (0 or 1) whose top left is `left` pixels right of the pen and `top` pixels
// above the baseline; the pen then moves `advance` pixels on.
struct Ink {
    int width = 0;
    int height = 0;
    int left = 0;
    int top = 0;
    int advance = 0;
    std::vector<uint8_t> bits;
};

}  // namespace VantorFont

#endif
