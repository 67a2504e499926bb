// SPDX-License-Identifier: MIT
#ifndef VANTOR_DISPLAYDEVICE_H
#define VANTOR_DISPLAYDEVICE_H

#include <linux/fb.h>
#include <stddef.h>
#include <stdint.h>

#include "io/UniqueFd.h"
#include "vantor/PixelFormat.h"
#include "vantor/Screen.h"

namespace Vantor {

// What a screen gives the canvases, whatever kind of device is behind it: mapped memory,
// the visible page's size, the distance between rows, the pixel layout, and a way to
// tell the hardware that a rectangle of the page has new pixels. A new kind of display
// is a new subclass; nothing above CFramebuffer knows which one it draws on.
class CDisplayDevice {
  public:
    // Opens the node as whichever kind of display answers there. Null after one line on
    // stdout that names what was found.
    static CDisplayDevice* Open(const char* path);

    virtual ~CDisplayDevice() = default;
    CDisplayDevice(const CDisplayDevice&) = delete;
    CDisplayDevice& operator=(const CDisplayDevice&) = delete;

    // The visible page, tied to this device so that a paint through it is shown.
    CScreen Page() const;
    int Descriptor() const { return device.Get(); }
    void* Memory() const { return memory; }

    // Sets the device up on its node; false after one line on stdout. The device is
    // deleted either way and then gives back whatever it took.
    virtual bool Start(const char* path) = 0;
    // The two fbdev screen descriptions: the real ones for an fbdev node, made up from
    // the mode for others, so hosts that read them still find size and layout.
    virtual void Describe(fb_var_screeninfo& var, fb_fix_screeninfo& fix) const = 0;
    // Pixels inside the rectangle (page coordinates, already clipped to the page) have
    // changed in memory; the device makes sure they reach the glass.
    virtual void Show(int x, int y, int width, int height) const = 0;

  protected:
    CDisplayDevice() = default;

  private:
    // The device that answers on the open node, not yet set up; null after one line on
    // stdout when neither kind answers.
    static CDisplayDevice* Identify(UniqueFd& node, const char* path);

  protected:
    // Closed after the subclass has given back its mapping and its buffers.
    UniqueFd device;
    void* memory = nullptr;
    size_t memoryBytes = 0;
    uint8_t* start = nullptr;
    int width = 0;
    int height = 0;
    size_t stride = 0;
    CPixelFormat format;
};

}  // namespace Vantor

#endif
