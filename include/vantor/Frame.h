// SPDX-License-Identifier: MIT
#ifndef VANTOR_FRAME_H
#define VANTOR_FRAME_H

#include "vantor/Export.h"
#include "vantor/Point.h"

namespace Vantor {

// A rectangle given by two corners that both belong to it.
class VANTOR_API CFrame {
  public:
    CFrame() = default;
    CFrame(const CPoint& a, const CPoint& b) : topLeft(a), bottomRight(b) {}
    // From a position and a size; a size below 1 counts as 1 so the frame is never empty.
    CFrame(int x, int y, int width, int height);
    virtual ~CFrame() = default;
    CFrame(const CFrame&) = default;
    CFrame& operator=(const CFrame&) = default;

    // A frame spanning more than an int can count reports INT_MAX rather than wrapping.
    int getWidth() const { return Span(topLeft.x, bottomRight.x); }
    int getHeight() const { return Span(topLeft.y, bottomRight.y); }

    CPoint topLeft;
    CPoint bottomRight;

  private:
    static int Span(int from, int to) {
        const long long span = static_cast<long long>(to) - from + 1;
        return span > 0x7fffffffLL ? 0x7fffffff : static_cast<int>(span);
    }
};

}  // namespace Vantor

#endif
