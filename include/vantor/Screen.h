// SPDX-License-Identifier: MIT
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
//
// The picture may be turned on the panel (a panel mounted sideways or upside down).
// width and height are then the size of the picture as the host lays it out, and
// everything above the block transfers below works in those logical coordinates;
// only the transfers know where a logical pixel lands on the panel.
class VANTOR_API CScreen {
  public:
    // No memory: every transfer onto it does nothing.
    CScreen();
    // Plain memory of 32-bit 0x00RRGGBB pixels in rows of `width` pixels.
    CScreen(unsigned int* pixels, int width, int height);
    CScreen(uint8_t* start, int width, int height, size_t stride, const CPixelFormat& format);

    // Pixel (x, y) of the panel, before any turning; the caller keeps it on the panel.
    uint8_t* At(int x, int y) const {
        return pStart + static_cast<size_t>(y) * stride +
               static_cast<size_t>(x) * format.getBytesPerPixel();
    }

    // Tells the device that new pixels are in the rectangle (x, y, width, height) of the
    // page, in panel coordinates (see PanelBlock): some drivers show nothing until they
    // are told. Called once per transfer that
    // changed the screen, with the part it changed; a plain memory screen has no device
    // and this does nothing.
    void Show(int x, int y, int width, int height) const;
    void AttachDevice(const CDisplayDevice* device);

    // Turns the picture 0, 90, 180 or 270 degrees clockwise on the panel: logical
    // (x, y) is shown at panel (W-1-y, x) for 90, (W-1-x, H-1-y) for 180 and
    // (y, H-1-x) for 270, W x H being the panel. width and height swap for 90 and 270.
    // False, and nothing changes, for any other angle.
    bool setRotation(int degrees);
    int getRotation() const { return rotation; }
    int getPanelWidth() const { return rotation % 180 == 0 ? width : height; }
    int getPanelHeight() const { return rotation % 180 == 0 ? height : width; }

    // A rectangle in pixels: a logical one, or where a logical one lies on the panel.
    struct Block {
        int x;
        int y;
        int width;
        int height;
    };
    Block PanelBlock(int x, int y, int w, int h) const;

    // Block transfers between a buffer of 32-bit pixels (rows `pitch` pixels apart) and
    // the logical rectangle (x, y) + (w, h) of the screen, which the caller has clipped
    // to width x height. Colours are encoded in the screen's layout; raw pixels move
    // bit for bit, so a block read and written back restores the exact bytes.
    void EncodeBlock(const uint32_t* colours, size_t pitch, int x, int y, int w, int h) const;
    void ReadBlock(uint32_t* raw, size_t pitch, int x, int y, int w, int h) const;
    void WriteBlock(const uint32_t* raw, size_t pitch, int x, int y, int w, int h) const;

    uint8_t* pStart;
    int width;
    int height;
    size_t stride;
    CPixelFormat format;

  private:
    template <typename Rows, typename Tiles>
    void Walk(size_t pitch, int x, int y, int w, int h, ptrdiff_t tileStride, Rows rows,
              Tiles tiles) const;
    template <typename Direct, typename Converted>
    void RawTiles(Direct direct, Converted converted) const;
    template <typename Tiles>
    bool PackedTurn(size_t pitch, int x, int y, int w, int h, Tiles tiles) const;

    int rotation;
    const CDisplayDevice* pDevice;
};

}  // namespace Vantor

#endif
