// SPDX-License-Identifier: MIT
#include "vantor/Glyph.h"

#include <climits>

#include "vantor/BitmapFont.h"
#include "vantor/Canvas.h"

namespace Vantor {

CGlyph::CGlyph(CBitmapFont& font, int glyphCode, const CPoint& at, const CRGBA24& fg,
               const CRGBA24& bg)
    : foreground(fg), background(bg), pFont(&font), code(glyphCode), position(at) {}

int CGlyph::Draw(CCanvas& canvas) {
    const unsigned char* bitmap = pFont->getGlyphFromCode(code);
    if (bitmap == nullptr) return -2;
    canvas.setBitmap(position.x, position.y, bitmap, pFont->header.glyphWidth,
                     pFont->header.glyphHeight, foreground, background);
    return 0;
}

int CGlyph::getSize(int& width, int& height) {
    width = pFont->header.glyphWidth;
    height = pFont->header.glyphHeight;
    return 0;
}

int CGlyph::getPosition(CPoint& at) {
    at.x = position.x;
    at.y = position.y;
    return 0;
}

int CGlyph::setPosition(const CPoint& at) {
    position.x = at.x;
    position.y = at.y;
    return 0;
}

}  // namespace Vantor
