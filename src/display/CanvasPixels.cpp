// SPDX-License-Identifier: MIT
// The pixel operations of CCanvas. Every write into a canvas goes through setPoint or the
// row fills of CanvasFills.cpp; the transfers to and from the screen are in
// CanvasTransfers.cpp.
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

}  // namespace Vantor
