// SPDX-License-Identifier: MIT
#include "vantor/Frame.h"

#include <algorithm>
#include <climits>

namespace Vantor {

namespace {

// The far corner in 64 bits: hosts may pass positions near the int limits, and the
// sum must not overflow on the way.
int FarCorner(int start, int extent) {
    const long long far = static_cast<long long>(start) + std::max(extent, 1) - 1;
    return static_cast<int>(std::min<long long>(far, INT_MAX));
}

}  // namespace

CFrame::CFrame(int x, int y, int width, int height)
    : topLeft(x, y), bottomRight(FarCorner(x, width), FarCorner(y, height)) {
    // With an extent clamped at INT_MAX the corners still come out ordered.
    if (bottomRight.x < topLeft.x) std::swap(topLeft.x, bottomRight.x);
    if (bottomRight.y < topLeft.y) std::swap(topLeft.y, bottomRight.y);
}

}  // namespace Vantor
