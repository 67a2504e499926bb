// SPDX-License-Identifier: MIT
#ifndef VANTOR_GOBJ_H
#define VANTOR_GOBJ_H

#include "vantor/Export.h"
#include "vantor/Point.h"

namespace Vantor {

class CCanvas;

// Everything a canvas can keep in its list and redraw. Objects draw only through
// the canvas's point operations, which drop what falls outside the canvas.
class VANTOR_API CGObj {
  public:
    virtual ~CGObj() = default;
    virtual int Draw(CCanvas& canvas) = 0;
    virtual int getSize(int& width, int& height) = 0;
    virtual int getPosition(CPoint& position) = 0;
    virtual int setPosition(const CPoint& position) = 0;
};

}  // namespace Vantor

#endif
