// SPDX-License-Identifier: MIT
#include "vantor/AsciiText.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>

#include "vantor/BitmapFont.h"
#include "vantor/Canvas.h"
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
    : foreground(0xFFFFFF),
      background(0),
      font(f),
      pText(nullptr),
      alignment(eAlignLeft),
      encoding(CTextCodes::getEncoding()) {}

CAsciiText::CAsciiText(const char* text, CBitmapFont& f) : CAsciiText(f) {
    Take(text);
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
    Take(text);
}

// Copies first, and decodes from the copy: text may point into our own string. The
// text means what the encoding of this moment says.
void CAsciiText::Take(const char* text) {
    std::unique_ptr<char[]> copy(CopyOf(text));
    const eTextEncoding now = CTextCodes::getEncoding();
    std::u32string decoded = CTextCodes::Decode(copy.get(), now);
    delete[] pText;
    pText = copy.release();
    codes.swap(decoded);
    encoding = now;
}

int CAsciiText::getSize(int& width, int& height) {
    if (pText == nullptr) {
        width = 0;
        height = 0;
        return 0;
    }
    // An absurdly long text in an absurdly wide font reports the widest size an int holds.
    width = static_cast<int>(std::min<long long>(TextWidth(), INT_MAX));
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

long long CAsciiText::TextWidth() const {
    return static_cast<long long>(codes.size()) * font.header.glyphWidth;
}

// A centred text wider than its canvas starts at the same formula and so runs off
// both edges evenly; the canvas drops what falls outside. In 64 bits, so that positions
// near the int limits and huge fonts cannot overflow.
long long CAsciiText::FirstCellX(int canvasWidth) const {
    const long long textWidth = TextWidth();
    const long long x = position.x;
    // Only 2 and 3, with or without the band flag, move the text; any other value is left.
    switch (alignment & ~eAlignFillLine) {
        case eAlignCenter:
            return x + (canvasWidth - textWidth) / 2;
        case eAlignRight:
            return canvasWidth - x - textWidth;
        default:
            return x;
    }
}

void CAsciiText::FillBand(CCanvas& canvas) const {
    CRectangle band(0, position.y, canvas.getWidth(), font.header.glyphHeight, background,
                    background);
    band.Draw(canvas);
}

int CAsciiText::Draw(CCanvas& canvas) {
    if (pText == nullptr) return 0;
    if (alignment & eAlignFillLine) FillBand(canvas);
    // Each character is drawn as its glyph would draw itself, without making one: a
    // missing glyph leaves its cell alone, and only cells that overlap the canvas are
    // looked up, so a 300,000-character line costs a scan of its codes.
    const int width = font.header.glyphWidth;
    const int height = font.header.glyphHeight;
    const int canvasWidth = canvas.getWidth();
    long long x = FirstCellX(canvasWidth);
    for (size_t i = 0; i < codes.size() && x < canvasWidth; ++i, x += width) {
        if (x + width <= 0) continue;
        const unsigned char* bitmap = GlyphOf(codes[i]);
        if (bitmap != nullptr) {
            canvas.setBitmap(x, position.y, bitmap, width, height, foreground, background);
        }
    }
    return 0;
}

// Byte text leaves the cell of a code the font lacks as it was. UTF-8 text shows such a
// character as the font's replacement character, else its '?', so that it is never a
// silent gap; only control characters stay invisible.
const unsigned char* CAsciiText::GlyphOf(char32_t code) const {
    const unsigned char* bitmap = font.getGlyphFromCode(static_cast<int>(code));
    if (bitmap != nullptr || encoding != eTextUtf8 || CTextCodes::IsControl(code)) return bitmap;
    bitmap = font.getGlyphFromCode(0xFFFD);
    return bitmap != nullptr ? bitmap : font.getGlyphFromCode('?');
}

void CAsciiText::Clear(CCanvas& canvas) {
    if (pText == nullptr) return;
    int width = 0;
    int height = 0;
    CPoint at;
    getSize(width, height);
    getPosition(at);
    canvas.setArea(at.x, at.y, static_cast<long long>(at.x) + width,
                   static_cast<long long>(at.y) + height, background);
}

}  // namespace Vantor
