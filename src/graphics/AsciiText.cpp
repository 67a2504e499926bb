#include "vantor/AsciiText.h"

#include <climits>
#include <cstring>

#include "vantor/BitmapFont.h"
#include "vantor/Canvas.h"
#include "vantor/Glyph.h"
#include "vantor/Rectangle.h"

namespace Vantor {

namespace {

char* CopyOf(const char* text) {
    if (text == nullptr) return nullptr;
    char* copy = new char[std::strlen(text) + 1];
    std::strcpy(copy, text);
    return copy;
}

}  // namespace

CAsciiText::CAsciiText(CBitmapFont& f)
    : foreground(0xFFFFFF), background(0), font(f), pText(nullptr), alignment(eAlignLeft) {}

CAsciiText::CAsciiText(const char* text, CBitmapFont& f) : CAsciiText(f) {
    pText = CopyOf(text);
}

CAsciiText::CAsciiText(const char* text, CBitmapFont& f, const CPoint& at) : CAsciiText(text, f) {
    position = at;
}

CAsciiText::CAsciiText(const char* text, CBitmapFont& f, const CPoint& at, const CRGBA24& fg)
    : CAsciiText(text, f, at) {
    foreground = fg;
}

CAsciiText::CAsciiText(const char* text, CBitmapFont& f, const CPoint& at, const CRGBA24& fg,
                       const CRGBA24& bg)
    : CAsciiText(text, f, at, fg) {
    background = bg;
}

CAsciiText::~CAsciiText() {
    delete[] pText;
}

void CAsciiText::setText(const char* text) {
    char* copy = CopyOf(text);  // copy first: text may point into our own string
    delete[] pText;
    pText = copy;
}

int CAsciiText::getSize(int& width, int& height) {
    if (pText == nullptr) {
        width = 0;
        height = 0;
        return 0;
    }
    const long long full = static_cast<long long>(std::strlen(pText)) * font.header.glyphWidth;
    width = full > INT_MAX ? INT_MAX : static_cast<int>(full);
    height = font.header.glyphHeight;
    return 0;
}

int CAsciiText::getPosition(CPoint& at) {
    at.x = position.x;
    at.y = position.y;
    return 0;
}

int CAsciiText::setPosition(const CPoint& at) {
    position.x = at.x;
    position.y = at.y;
    return 0;
}

eAlignMode CAsciiText::getAlignment() {
    return alignment;
}

void CAsciiText::setAlignment(eAlignMode mode) {
    alignment = mode;
}

// A centred text wider than its canvas starts at the same formula and so runs off
// both edges evenly; the canvas drops what falls outside.
// In 64 bits: a text may start anywhere an int reaches and be wider than an int counts.
long long CAsciiText::FirstCellX(int canvasWidth) const {
    const long long textWidth = static_cast<long long>(std::strlen(pText)) * font.header.glyphWidth;
    // Only 2 and 3, with or without the band flag, move the text; any other value is left.
    switch (alignment & ~eAlignFillLine) {
        case eAlignCenter:
            return position.x + (canvasWidth - textWidth) / 2;
        case eAlignRight:
            return static_cast<long long>(canvasWidth) - position.x - textWidth;
        default:
            return position.x;
    }
}

void CAsciiText::FillBand(CCanvas& canvas) const {
    CRectangle band(0, position.y, canvas.getWidth(), font.header.glyphHeight, background,
                    background);
    band.Draw(canvas);
}

int CAsciiText::Draw(CCanvas& canvas) {
    if (pText == nullptr) return 0;
    long long x = FirstCellX(canvas.getWidth());
    if (alignment & eAlignFillLine) FillBand(canvas);
    // Only cells that overlap the canvas are drawn: a 300,000-character line costs a
    // scan of its bytes, not 300,000 glyphs clipped pixel by pixel.
    const int cell = font.header.glyphWidth;
    for (const char* p = pText; *p != '\0' && x < canvas.getWidth(); ++p) {
        if (x + cell > 0) {
            CGlyph glyph(font, static_cast<unsigned char>(*p), CPoint(int(x), position.y),
                         foreground, background);
            glyph.Draw(canvas);
        }
        x += cell;
    }
    return 0;
}

void CAsciiText::Clear(CCanvas& canvas) {
    if (pText == nullptr) return;
    int width = 0;
    int height = 0;
    CPoint at;
    getSize(width, height);
    getPosition(at);
    for (long long y = at.y; y < at.y + static_cast<long long>(height) && y <= INT_MAX; ++y) {
        for (long long x = at.x; x < at.x + static_cast<long long>(width) && x <= INT_MAX; ++x) {
            canvas.setPoint(int(x), int(y), background);
        }
    }
}

}  // namespace Vantor
