#include "vantor/Screen.h"

#include "DisplayDevice.h"

namespace Vantor {

CScreen::CScreen() : pStart(nullptr), width(0), height(0), stride(0), pDevice(nullptr) {}

CScreen::CScreen(unsigned int* pixels, int w, int h)
    : CScreen(reinterpret_cast<uint8_t*>(pixels), w, h, w > 0 ? size_t(w) * 4 : 0, CPixelFormat()) {
}

CScreen::CScreen(uint8_t* start, int w, int h, size_t rowBytes, const CPixelFormat& pixelFormat)
    : pStart(start), width(w), height(h), stride(rowBytes), format(pixelFormat), pDevice(nullptr) {}

void CScreen::AttachDevice(const CDisplayDevice* device) {
    pDevice = device;
}

// The page's coordinates are the device's own.
void CScreen::Show(int x, int y, int w, int h) const {
    if (pDevice != nullptr) pDevice->Show(x, y, w, h);
}

}  // namespace Vantor
