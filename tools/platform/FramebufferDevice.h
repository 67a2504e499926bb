// SPDX-License-Identifier: MIT
#ifndef VANTOR_PLATFORM_FRAMEBUFFERDEVICE_H
#define VANTOR_PLATFORM_FRAMEBUFFERDEVICE_H

#include <stddef.h>
#include <stdint.h>

#include <string>

#include "vantor_platform.h"

namespace VantorPlatform {

// One virtual framebuffer: a real file as its memory, the layer's own shared view of
// it, the answers to the two screen-info ioctls, the failures it was told to show and
// the counts tests check.
class FramebufferDevice {
  public:
    FramebufferDevice() = default;
    FramebufferDevice(const FramebufferDevice&) = delete;
    FramebufferDevice& operator=(const FramebufferDevice&) = delete;
    ~FramebufferDevice();

    static bool IsValid(const vp_screen& screen);
    // Makes the memory file at realPath; false (and nothing left behind) on failure. A
    // shared device uses the file another process may have made there, pixels and all,
    // and leaves it behind.
    bool Create(const std::string& realPath, const vp_screen& screen, bool shared);
    // Answers the screen-info requests like the kernel's driver, with error 0 or the
    // errno of the failure; false for any other request.
    bool AnswerIoctl(unsigned long request, void* argument, int& error);
    uint32_t* Pixels() const { return view; }

    int failures = 0;
    int openCount = 0;
    int closeCount = 0;
    int unmapCount = 0;
    int panCount = 0;

  private:
    int OpenMemory(const std::string& realPath) const;
    bool Grow(int fd) const;
    void FillVariable(void* argument) const;
    void FillFixed(void* argument) const;

    vp_screen screen{};
    std::string file;
    uint32_t* view = nullptr;
    size_t size = 0;
    bool shared = false;
};

}  // namespace VantorPlatform

#endif
