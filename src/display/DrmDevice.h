// SPDX-License-Identifier: MIT
#ifndef VANTOR_DRMDEVICE_H
#define VANTOR_DRMDEVICE_H

#include <string>

#include "DisplayDevice.h"
#include "DrmCard.h"
#include "DrmOutput.h"

namespace Vantor {

// A DRM/KMS card (/dev/dri/cardN) driven the simplest way that works everywhere: one
// dumb buffer of the chosen mode's size, set on the CRTC while we run. The CRTC's
// previous state is put back at the end, so the console returns as it was.
class CDrmDevice : public CDisplayDevice {
  public:
    // Takes over the open descriptor of a card whose driver is named driver.
    CDrmDevice(UniqueFd descriptor, const std::string& driver);
    ~CDrmDevice() override;

    bool Start(const char* path) override;
    void Describe(fb_var_screeninfo& var, fb_fix_screeninfo& fix) const override;
    void Show(int x, int y, int width, int height) const override;

  private:
    bool Refuse(const char* path, const std::string& what, const std::string& found = "") const;
    bool CreateBuffer(const char* path);
    bool TryBuffer(uint32_t bitsPerPixel, uint32_t depth);
    bool Map(const char* path);
    bool SetMode(const char* path);
    void RestoreCrtc();
    void DescribeLayout(fb_var_screeninfo& var) const;

    CDrmCard card;
    std::string driver;
    CDrmOutput output;
    uint32_t handle = 0;
    uint32_t framebufferId = 0;
    uint32_t bitsPerPixel = 0;
    uint32_t pitch = 0;
    uint64_t bufferBytes = 0;
    drm_mode_crtc saved{};
    bool haveSaved = false;
    bool modeSet = false;
    // Drivers that scan out straight from memory have no dirty hook and say ENOSYS
    // once; they are not asked again.
    mutable bool dirtyAnswers = true;
};

}  // namespace Vantor

#endif
