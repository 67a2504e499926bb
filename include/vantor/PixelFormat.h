// SPDX-License-Identifier: MIT
#ifndef VANTOR_PIXELFORMAT_H
#define VANTOR_PIXELFORMAT_H

#include <stddef.h>
#include <stdint.h>

#include "vantor/Export.h"

struct fb_var_screeninfo;

namespace Vantor {

// How one screen pixel is laid out in device memory: its size and where the red,
// green and blue bits sit. It is decided once from the device; everything above the
// transfers keeps working in 0x00RRGGBB and never asks.
//
// A colour is written by keeping the top `length` bits of each 8-bit channel
// (truncation). A device pixel is always held as its raw value in one uint32 (the
// background buffers keep it that way), so the screen's own bytes can be put back
// exactly in every layout.
class VANTOR_API CPixelFormat {
  public:
    struct Channel {
        unsigned offset;
        unsigned length;
    };

    // The canvases' own layout: 32 bits, red in bits 16-23, green 8-15, blue 0-7.
    CPixelFormat();
    CPixelFormat(int bitsPerPixel, Channel red, Channel green, Channel blue);

    // The layout of a device, or false when the library cannot draw it (a palette, a
    // depth other than 16, 24 or 32 bits, FOURCC, overlapping or empty channels).
    static bool FromDevice(const fb_var_screeninfo& info, CPixelFormat& format);

    // False for a layout the transfers cannot write (see FromDevice).
    bool IsValid() const;
    int getBytesPerPixel() const { return bytesPerPixel; }
    // True for the canvases' own layout, where a row is copied byte for byte.
    bool IsNative() const { return native; }
    uint32_t Encode(uint32_t colour) const;

    // Canvas colours to device pixels; `count` pixels, no alignment needed.
    void EncodeRow(const uint32_t* colours, uint8_t* device, size_t count) const;
    // Raw device pixels to and from one uint32 each, bit for bit.
    void ReadRaw(const uint8_t* device, uint32_t* raw, size_t count) const;
    void WriteRaw(const uint32_t* raw, uint8_t* device, size_t count) const;

    int bitsPerPixel;
    Channel red;
    Channel green;
    Channel blue;

  private:
    void Prepare();

    int bytesPerPixel;
    bool native;
};

}  // namespace Vantor

#endif
