// SPDX-License-Identifier: MIT
#include "vantor/ProgressBar.h"

#include <algorithm>
#include <climits>

#include "vantor/Canvas.h"

namespace Vantor {

CProgressBar::CProgressBar(int x, int y, int width, int height)
    : foreground(0xFFFFFF), background(0), progress(0.0f), box(x, y, width, height) {
    bar = CFrame(box.topLeft, CPoint(box.topLeft.x, box.bottomRight.y));
}

void CProgressBar::setProgress(float percent) {
    // Written so that a NaN fails the first test and ends up as 0.
    if (!(percent > 0.0f)) {
        progress = 0.0f;
    } else if (percent >= 100.0f) {
        progress = 100.0f;
    } else {
        progress = percent;
    }
}

int CProgressBar::Draw(CCanvas& canvas) {
    canvas.setRectangle(box.topLeft, box.bottomRight, background);
    canvas.setRectangleFrame(box.topLeft, box.bottomRight, foreground);
    if (progress > 0.0f) {
        // The box is public and may be set to any corners: work in 64 bits and keep the
        // bar's edge inside int range.
        const long long boxWidth = static_cast<long long>(box.bottomRight.x) - box.topLeft.x + 1;
        const float fraction = progress / 100.0f;
        // A float holds widths above 2^24 only roughly and may round past the box.
        const long long filled =
            std::min(static_cast<long long>(static_cast<float>(boxWidth) * fraction), boxWidth);
        bar.bottomRight.x =
            static_cast<int>(std::clamp<long long>(bar.topLeft.x + filled - 1, INT_MIN, INT_MAX));
        // Below one pixel's worth there is nothing to fill; the inverted frame would
        // otherwise paint the column left of the box.
        if (filled > 0) canvas.setRectangle(bar.topLeft, bar.bottomRight, foreground);
    }
    return 0;
}

int CProgressBar::getSize(int& width, int& height) {
    width = box.getWidth();
    height = box.getHeight();
    return 0;
}

int CProgressBar::getPosition(CPoint& position) {
    position = box.topLeft;
    return 0;
}

int CProgressBar::setPosition(const CPoint& position) {
    box = CFrame(position.x, position.y, box.getWidth(), box.getHeight());
    bar = CFrame(position.x, position.y, bar.getWidth(), bar.getHeight());
    return 0;
}

}  // namespace Vantor
