// SPDX-License-Identifier: MIT
#include "vantor/Screen.h"

#include "DisplayDevice.h"

namespace Vantor {

CScreen::CScreen()
    : pStart(nullptr), width(0), height(0), stride(0), rotation(0), pDevice(nullptr) {}

CScreen::CScreen(unsigned int* pixels, int w, int h)
    : CScreen(reinterpret_cast<uint8_t*>(pixels), w, h, w > 0 ? size_t(w) * 4 : 0, CPixelFormat()) {
}

CScreen::CScreen(uint8_t* start, int w, int h, size_t rowBytes, const CPixelFormat& pixelFormat)
    : pStart(start),
      width(w),
      height(h),
      stride(rowBytes),
      format(pixelFormat),
      rotation(0),
      pDevice(nullptr) {}

void CScreen::AttachDevice(const CDisplayDevice* device) {
    pDevice = device;
}

bool CScreen::setRotation(int degrees) {
    if (degrees != 0 && degrees != 90 && degrees != 180 && degrees != 270) return false;
    const int panelWidth = getPanelWidth();
    const int panelHeight = getPanelHeight();
    rotation = degrees;
    width = rotation % 180 == 0 ? panelWidth : panelHeight;
    height = rotation % 180 == 0 ? panelHeight : panelWidth;
    return true;
}

// The rectangle is already in the panel's coordinates, which are the device's own.
void CScreen::Show(int x, int y, int w, int h) const {
    if (pDevice != nullptr) pDevice->Show(x, y, w, h);
}

}  // namespace Vantor
