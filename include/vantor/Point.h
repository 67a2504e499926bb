// SPDX-License-Identifier: MIT
#ifndef VANTOR_POINT_H
#define VANTOR_POINT_H

#include "vantor/Export.h"

namespace Vantor {

// A pixel position; x grows to the right, y downwards.
class VANTOR_API CPoint {
  public:
    CPoint() : x(0), y(0) {}
    CPoint(int px, int py) : x(px), y(py) {}
    virtual ~CPoint() = default;
    CPoint(const CPoint&) = default;
    CPoint& operator=(const CPoint&) = default;

    bool operator==(const CPoint& other) const { return x == other.x && y == other.y; }

    int x;
    int y;
};

}  // namespace Vantor

#endif
