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
    const int width = pFont->header.glyphWidth;
    const int height = pFont->header.glyphHeight;
    // A glyph at the far right or bottom of the int range loses the cells beyond it.
    for (int r = 0; r < height && position.y <= INT_MAX - r; ++r) {
        for (int c = 0; c < width && position.x <= INT_MAX - c; ++c) {
            const bool set = bitmap[r * width + c] != 0;
            canvas.setPoint(position.x + c, position.y + r, set ? foreground : background);
        }
    }
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
