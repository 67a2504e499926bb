// SPDX-License-Identifier: MIT
#ifndef VANTOR_MKFONT_GLYPHSET_H
#define VANTOR_MKFONT_GLYPHSET_H

#include <cstdint>
#include <map>
#include <vector>

#include "Refusal.h"

namespace VantorFont {

// The converted font before it is written: fixed-cell glyphs by library code, each bitmap
// height rows of width bytes, 0 or 1. A map keeps the codes sorted and each one once.
class GlyphSet {
  public:
    using Bitmap = std::vector<uint8_t>;

    GlyphSet(int width, int height) : width(width), height(height) {}

    int Width() const { return width; }
    int Height() const { return height; }
    size_t Count() const { return glyphs.size(); }
    const std::map<int, Bitmap>& Glyphs() const { return glyphs; }

    void Add(int code, Bitmap bits) {
        // A bitmap of another size would shift every glyph after it in the file.
        if (bits.size() != size_t(width) * size_t(height)) throw Refusal("glyph of wrong size");
        glyphs[code] = std::move(bits);
    }

  private:
    int width;
    int height;
    std::map<int, Bitmap> glyphs;
};

}  // namespace VantorFont

#endif
