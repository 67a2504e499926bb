// The pixel operations of CCanvas and its transfers to and from the screen. Every write
// into a canvas goes through setPoint or the row fills of CanvasFills.cpp; every write
// onto the screen through Paint and RestoreBackground, both clipped by ForEachScreenPixel.
#include <algorithm>

#include "vantor/Canvas.h"

namespace Vantor {

bool CCanvas::Contains(int x, int y) const {
    return x >= 0 && y >= 0 && x < getWidth() && y < getHeight();
}

int CCanvas::setPoint(int x, int y, const CRGBA24& colour) {
    // A canvas made empty has no buffer until it is first sized; drawing then drops.
    if (pPixels == nullptr || !Contains(x, y)) return -2;
    pPixels[static_cast<size_t>(y) * getWidth() + x] = colour.value;
    modified = true;
    return 0;
}

int CCanvas::clearPoint(const CPoint& p) {
    return setPoint(p, background);
}

int CCanvas::setLine(const CPoint&, const CPoint&, int, const CRGBA24&) {
    return -2;
}

int CCanvas::setGlyph(const CPoint&, unsigned int*, int, int, const CRGBA24&) {
    return 0;
}

void CCanvas::NormalizePoint(int& x, int& y) const {
    x = std::clamp(x, 0, getWidth());
    y = std::clamp(y, 0, getHeight());
}

// Orders the corners and clamps them into the half-open area [0, W] x [0, H]. The
// smaller value is only raised and the larger only lowered, so a rectangle wholly
// outside the canvas comes out inverted and the drawing loops skip it.
void CCanvas::NormalizeRectangle(int& x1, int& y1, int& x2, int& y2) const {
    const int left = std::max(std::min(x1, x2), 0);
    const int right = std::min(std::max(x1, x2), getWidth());
    const int top = std::max(std::min(y1, y2), 0);
    const int bottom = std::min(std::max(y1, y2), getHeight());
    x1 = left;
    x2 = right;
    y1 = top;
    y2 = bottom;
}

int CCanvas::setRectangle(const CPoint& a, const CPoint& b, const CRGBA24& colour) {
    int x1 = a.x, y1 = a.y, x2 = b.x, y2 = b.y;
    NormalizeRectangle(x1, y1, x2, y2);
    setArea(x1, y1, x2, y2, colour);
    return 0;
}

// The outline runs on both given corners' columns and rows, inclusive: the progress
// bar passes the inclusive corners of its box, and this closes the box exactly around
// that area (the half-open fill leaves its last column and row to the outline).
int CCanvas::setRectangleFrame(const CPoint& a, const CPoint& b, const CRGBA24& colour) {
    int x1 = a.x, y1 = a.y, x2 = b.x, y2 = b.y;
    NormalizeRectangle(x1, y1, x2, y2);
    if (x1 > x2 || y1 > y2) return 0;
    // Each edge is a one-pixel-wide area; setArea drops the parts on column W or row H.
    const long long right = x2 + 1LL;
    const long long bottom = y2 + 1LL;
    setArea(x1, y1, right, y1 + 1LL, colour);
    setArea(x1, y2, right, bottom, colour);
    setArea(x1, y1, x1 + 1LL, bottom, colour);
    setArea(x2, y1, right, bottom, colour);
    return 0;
}

// Visits canvas pixels [x1, x2) x [y1, y2) that fall on the screen, handing the copy
// the canvas element index and the screen element index.
template <typename Copy>
void CCanvas::ForEachScreenPixel(int x1, int y1, int x2, int y2, unsigned int* screen,
                                 int screenWidth, int screenHeight, Copy copy) {
    if (screen == nullptr) return;
    const long long originX = frame.topLeft.x;
    const long long originY = frame.topLeft.y;
    const size_t width = static_cast<size_t>(getWidth());
    // The columns on the screen are the same for every row: clip them once.
    const long long firstColumn = std::max<long long>(x1, -originX);
    const long long endColumn = std::min<long long>(x2, screenWidth - originX);
    for (int r = y1; r < y2; ++r) {
        const long long sy = originY + r;
        if (sy < 0 || sy >= screenHeight) continue;
        const size_t rowStart = static_cast<size_t>(sy) * screenWidth;
        for (long long c = firstColumn; c < endColumn; ++c) {
            copy(r * width + c, rowStart + static_cast<size_t>(originX + c));
        }
    }
}

void CCanvas::SaveBackground(unsigned int* screen, int screenWidth, int screenHeight) {
    if (pBackground == nullptr) return;
    ForEachScreenPixel(0, 0, getWidth(), getHeight(), screen, screenWidth, screenHeight,
                       [&](size_t own, size_t onScreen) { pBackground[own] = screen[onScreen]; });
}

void CCanvas::RestoreBackground(unsigned int* screen, int screenWidth, int screenHeight) {
    if (pBackground == nullptr) return;
    ForEachScreenPixel(0, 0, getWidth(), getHeight(), screen, screenWidth, screenHeight,
                       [&](size_t own, size_t onScreen) { screen[onScreen] = pBackground[own]; });
}

int CCanvas::Paint(const CPoint& a, const CPoint& b, unsigned int* screen, int screenWidth,
                   int screenHeight) {
    const int xa = std::clamp(std::min(a.x, b.x), 0, getWidth());
    const int xb = std::clamp(std::max(a.x, b.x), 0, getWidth());
    const int ya = std::clamp(std::min(a.y, b.y), 0, getHeight());
    const int yb = std::clamp(std::max(a.y, b.y), 0, getHeight());
    if (xa == xb || ya == yb) return -2;
    if (pPixels == nullptr) return -2;
    ForEachScreenPixel(xa, ya, xb, yb, screen, screenWidth, screenHeight,
                       [&](size_t own, size_t onScreen) { screen[onScreen] = pPixels[own]; });
    return 0;
}

int CCanvas::Paint(unsigned int* screen, int screenWidth, int screenHeight) {
    const int result =
        Paint(CPoint(0, 0), CPoint(getWidth(), getHeight()), screen, screenWidth, screenHeight);
    if (result == 0) modified = false;
    return result;
}

}  // namespace Vantor
