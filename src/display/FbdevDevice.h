// SPDX-License-Identifier: MIT
#ifndef VANTOR_FBDEVDEVICE_H
#define VANTOR_FBDEVDEVICE_H

#include "DisplayDevice.h"

namespace Vantor {

// A Linux framebuffer device (/dev/fbN): its memory is mapped whole and the visible page
// is the part the pan offsets point at.
class CFbdevDevice : public CDisplayDevice {
  public:
    // Takes over the open descriptor whose variable screen information was just read.
    CFbdevDevice(UniqueFd descriptor, const fb_var_screeninfo& var);
    ~CFbdevDevice() override;

    bool Start(const char* path) override;
    void Describe(fb_var_screeninfo& var, fb_fix_screeninfo& fix) const override;
    void Show(int x, int y, int width, int height) const override;

  private:
    bool ReadFixedInfo(const char* path);
    bool HasDrawableFormat(const char* path);
    bool HasUsableGeometry(const char* path);
    bool Map(const char* path);

    fb_var_screeninfo varInfo;
    fb_fix_screeninfo fixInfo;
};

}  // namespace Vantor

#endif
