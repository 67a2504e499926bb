#include "vantor/Screen.h"

#include <linux/fb.h>
#include <sys/ioctl.h>

namespace Vantor {

CScreen::CScreen()
    : pStart(nullptr), width(0), height(0), stride(0), rotation(0), fd(-1), pPanInfo(nullptr) {}

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
      fd(-1),
      pPanInfo(nullptr) {}

void CScreen::AttachDevice(int descriptor, const fb_var_screeninfo* info) {
    fd = descriptor;
    pPanInfo = info;
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

// The current offsets are panned to again, so nothing moves. Drivers without panning
// refuse it; the pixels are in memory either way, so the result is not used. The
// driver may write the structure back, hence the copy.
void CScreen::Show() const {
    if (fd <= 0 || pPanInfo == nullptr) return;
    fb_var_screeninfo info = *pPanInfo;
    ioctl(fd, FBIOPAN_DISPLAY, &info);
}

}  // namespace Vantor
