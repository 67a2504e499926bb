#ifndef VANTOR_SCREEN_H
#define VANTOR_SCREEN_H

#include <stddef.h>
#include <stdint.h>

#include "vantor/Export.h"
#include "vantor/PixelFormat.h"

namespace Vantor {

class CDisplayDevice;

// The part of screen memory a canvas is drawn onto: the visible page of a device,
// its size, the distance between its rows in bytes and its pixel layout. A screen
// that belongs to a framebuffer also knows how to tell the driver to show it.
class VANTOR_API CScreen {
  public:
    // No memory: every transfer onto it does nothing.
    CScreen();
    // Plain memory of 32-bit 0x00RRGGBB pixels in rows of `width` pixels.
    CScreen(unsigned int* pixels, int width, int height);
    CScreen(uint8_t* start, int width, int height, size_t stride, const CPixelFormat& format);

    // Pixel (x, y) of the page; the caller keeps it inside width x height.
    uint8_t* At(int x, int y) const {
        return pStart + static_cast<size_t>(y) * stride +
               static_cast<size_t>(x) * format.getBytesPerPixel();
    }

    // Tells the device that new pixels are in the rectangle (x, y, width, height) of the
    // page: some drivers show nothing until they are told. Called once per transfer that
    // changed the screen, with the part it changed; a plain memory screen has no device
    // and this does nothing.
    void Show(int x, int y, int width, int height) const;
    void AttachDevice(const CDisplayDevice* device);

    uint8_t* pStart;
    int width;
    int height;
    size_t stride;
    CPixelFormat format;

  private:
    const CDisplayDevice* pDevice;
};

}  // namespace Vantor

#endif
