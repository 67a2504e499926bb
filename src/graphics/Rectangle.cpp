// SPDX-License-Identifier: MIT
#include "vantor/Rectangle.h"

#include "vantor/Canvas.h"

namespace Vantor {

CRectangle::CRectangle(int x, int y, int width, int height, const CRGBA24& fg, const CRGBA24& bg)
    : foreground(fg), background(bg), frame(x, y, width, height) {}

int CRectangle::Draw(CCanvas& canvas) {
    CPoint corner;
    getPosition(corner);
    // In 64 bits: the frame is public and its corners may lie anywhere in int range.
    const long long rows = static_cast<long long>(frame.bottomRight.y) - frame.topLeft.y + 1;
    const long long columns = static_cast<long long>(frame.bottomRight.x) - frame.topLeft.x + 1;
    if (rows < 1) return 0;
    canvas.setArea(corner.x, corner.y, corner.x + columns, corner.y + rows, background);
    return 0;
}

int CRectangle::getSize(int& width, int& height) {
    width = frame.getWidth();
    height = frame.getHeight();
    return 0;
}

int CRectangle::getPosition(CPoint& position) {
    position = frame.topLeft;
    return 0;
}

int CRectangle::setPosition(const CPoint& position) {
    frame = CFrame(position.x, position.y, frame.getWidth(), frame.getHeight());
    return 0;
}

}  // namespace Vantor
