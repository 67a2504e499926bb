// SPDX-License-Identifier: MIT
// The transfers between a canvas and the screen. Each call clips once, in the screen's
// logical coordinates, and hands the visible block to the screen, which alone knows
// how its rows meet the panel (a copy, a conversion, or a turn).
#include <algorithm>

#include "vantor/Canvas.h"

namespace Vantor {

namespace {

// Canvas-local columns [firstColumn, endColumn) and rows [firstRow, endRow) that fall
// on the screen.
struct Span {
    int firstColumn;
    int endColumn;
    int firstRow;
    int endRow;

    bool IsEmpty() const { return firstColumn >= endColumn || firstRow >= endRow; }
    size_t Columns() const { return size_t(endColumn - firstColumn); }
    int Rows() const { return endRow - firstRow; }
    // Where the span starts in a buffer of rows `pitch` pixels long.
    size_t Offset(size_t pitch) const { return size_t(firstRow) * pitch + size_t(firstColumn); }
    // Where it starts on the screen.
    int screenX;
    int screenY;
};

// The part of [from, to) whose screen coordinate origin + i lies in [0, size). Worked out
// in 64 bits and kept inside [from, to), so a canvas far off the screen (at INT_MIN, say)
// can neither wrap into it nor give a negative column.
void ClipAxis(int from, int to, long long origin, int size, int& first, int& end) {
    first = int(std::clamp<long long>(-origin, from, to));
    end = int(std::clamp<long long>(size - origin, first, to));
}

Span ClipToScreen(const CFrame& frame, int x1, int y1, int x2, int y2, const CScreen& screen) {
    Span span;
    ClipAxis(x1, x2, frame.topLeft.x, screen.width, span.firstColumn, span.endColumn);
    ClipAxis(y1, y2, frame.topLeft.y, screen.height, span.firstRow, span.endRow);
    span.screenX = int(static_cast<long long>(frame.topLeft.x) + span.firstColumn);
    span.screenY = int(static_cast<long long>(frame.topLeft.y) + span.firstRow);
    // No memory, or a layout a host made up that cannot be written: nothing to do.
    if (screen.pStart == nullptr || !screen.format.IsValid()) span.endRow = span.firstRow;
    return span;
}

// Tells the device which part of the panel a transfer of this span changed.
void ShowSpan(const CScreen& screen, const Span& span) {
    const CScreen::Block changed =
        screen.PanelBlock(span.screenX, span.screenY, int(span.Columns()), span.Rows());
    screen.Show(changed.x, changed.y, changed.width, changed.height);
}

}  // namespace

void CCanvas::SaveBackground(const CScreen& screen) {
    if (pBackground == nullptr) return;
    const Span span = ClipToScreen(frame, 0, 0, getWidth(), getHeight(), screen);
    if (span.IsEmpty()) return;
    const size_t pitch = size_t(getWidth());
    screen.ReadBlock(pBackground + span.Offset(pitch), pitch, span.screenX, span.screenY,
                     int(span.Columns()), span.Rows());
}

void CCanvas::RestoreBackground(const CScreen& screen) {
    if (pBackground == nullptr) return;
    const Span span = ClipToScreen(frame, 0, 0, getWidth(), getHeight(), screen);
    if (span.IsEmpty()) return;
    const size_t pitch = size_t(getWidth());
    screen.WriteBlock(pBackground + span.Offset(pitch), pitch, span.screenX, span.screenY,
                      int(span.Columns()), span.Rows());
    ShowSpan(screen, span);
}

int CCanvas::Paint(const CPoint& a, const CPoint& b, const CScreen& screen) {
    const int xa = std::clamp(std::min(a.x, b.x), 0, getWidth());
    const int xb = std::clamp(std::max(a.x, b.x), 0, getWidth());
    const int ya = std::clamp(std::min(a.y, b.y), 0, getHeight());
    const int yb = std::clamp(std::max(a.y, b.y), 0, getHeight());
    if (xa == xb || ya == yb || pPixels == nullptr) return -2;
    const Span span = ClipToScreen(frame, xa, ya, xb, yb, screen);
    if (span.IsEmpty()) return 0;
    const size_t pitch = size_t(getWidth());
    screen.EncodeBlock(pPixels + span.Offset(pitch), pitch, span.screenX, span.screenY,
                       int(span.Columns()), span.Rows());
    ShowSpan(screen, span);
    return 0;
}

int CCanvas::Paint(const CScreen& screen) {
    const int result = Paint(CPoint(0, 0), CPoint(getWidth(), getHeight()), screen);
    if (result == 0) modified = false;
    return result;
}

void CCanvas::SaveBackground(unsigned int* screen, int screenWidth, int screenHeight) {
    SaveBackground(CScreen(screen, screenWidth, screenHeight));
}

void CCanvas::RestoreBackground(unsigned int* screen, int screenWidth, int screenHeight) {
    RestoreBackground(CScreen(screen, screenWidth, screenHeight));
}

int CCanvas::Paint(const CPoint& a, const CPoint& b, unsigned int* screen, int screenWidth,
                   int screenHeight) {
    return Paint(a, b, CScreen(screen, screenWidth, screenHeight));
}

int CCanvas::Paint(unsigned int* screen, int screenWidth, int screenHeight) {
    return Paint(CScreen(screen, screenWidth, screenHeight));
}

}  // namespace Vantor
