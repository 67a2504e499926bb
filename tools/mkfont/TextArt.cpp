// SPDX-License-Identifier: MIT
#include "TextArt.h"

#include <cstdio>

#include "vantor/BitmapFont.h"

namespace VantorFont {

std::string TextArt::Header() const {
    const auto& h = font.header;
    char text[160];
    std::snprintf(text, sizeof(text),
                  "magic \"%.8s\", %d glyphs, cell %dx%d pixels (width x height)\n", h.magic,
                  h.glyphCount, h.glyphWidth, h.glyphHeight);
    return text;
}

std::string TextArt::Glyph(int code) const {
    const unsigned char* bits = font.getGlyphFromCode(code);
    char hex[8];
    std::snprintf(hex, sizeof(hex), "0x%02X", code & 0xFF);
    std::string art = "code " + std::to_string(code) + " (" + hex + ")";
    // Only ASCII is shown as a character: above it the code page decides.
    if (code > 32 && code < 127) art += std::string(" '") + char(code) + "'";
    art += bits ? "\n" : ": not in the font\n";
    const int w = font.header.glyphWidth, h = font.header.glyphHeight;
    for (int r = 0; bits != nullptr && r < h; ++r) {
        for (int c = 0; c < w; ++c) art += bits[r * w + c] ? '#' : '.';
        art += '\n';
    }
    return art;
}

}  // namespace VantorFont
