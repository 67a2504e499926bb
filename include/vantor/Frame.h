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

    int getWidth() const { return bottomRight.x - topLeft.x + 1; }
    int getHeight() const { return bottomRight.y - topLeft.y + 1; }

    CPoint topLeft;
    CPoint bottomRight;
};

}  // namespace Vantor

#endif
