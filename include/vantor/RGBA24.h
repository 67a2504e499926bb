// SPDX-License-Identifier: MIT
#ifndef VANTOR_RGBA24_H
#define VANTOR_RGBA24_H

#include <stdint.h>

#include "vantor/Export.h"

namespace Vantor {

// One pixel as the screen stores it: 0x00RRGGBB in a little-endian word, so the
// bytes in memory are blue, green, red, 0. Copied unchanged into buffers and screen.
class VANTOR_API CRGBA24 {
  public:
    CRGBA24(uint32_t v = 0) : value(v) {}
    CRGBA24(uint8_t red, uint8_t green, uint8_t blue)
        : value((uint32_t(red) << 16) | (uint32_t(green) << 8) | blue) {}

    bool operator==(const CRGBA24& other) const { return value == other.value; }

    uint32_t value;
};

}  // namespace Vantor

#endif
