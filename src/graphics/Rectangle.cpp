#include "vantor/Rectangle.h"

#include "vantor/Canvas.h"

namespace Vantor {

CRectangle::CRectangle(int x, int y, int width, int height, const CRGBA24& fg, const CRGBA24& bg)
    : foreground(fg), background(bg), frame(x, y, width, height) {}

int CRectangle::Draw(CCanvas& canvas) {
    CPoint corner;
    getPosition(corner);
    const int rows = frame.bottomRight.y - frame.topLeft.y;
    const int columns = frame.bottomRight.x - frame.topLeft.x;
    if (rows < 0) return 0;
    for (int r = 0; r <= rows; ++r) {
        for (int c = 0; c <= columns; ++c) canvas.setPoint(corner.x + c, corner.y + r, background);
    }
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
