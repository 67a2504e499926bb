// SPDX-License-Identifier: MIT
#include "DisplayDevice.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "FbdevDevice.h"

namespace Vantor {

namespace {

const char* const kClassName = "CFramebuffer";

}  // namespace

// An fbdev node is asked first, exactly as it always was, so an fbdev device never
// receives a request of another kind.
CDisplayDevice* CDisplayDevice::Open(const char* path) {
    const int fd = open(path, O_RDWR | O_CLOEXEC);
    if (fd < 0) {
        printf("%s: can't access frame buffer device at %s\n", kClassName, path);
        return nullptr;
    }
    fb_var_screeninfo var;
    std::memset(&var, 0, sizeof(var));
    const int result = ioctl(fd, FBIOGET_VSCREENINFO, &var);
    if (result >= 0) return CFbdevDevice::Create(fd, path, var);
    printf("%s: cannot access variable screen info from %s: %d\n", kClassName, path, result);
    if (fd > 0) close(fd);
    return nullptr;
}

CScreen CDisplayDevice::Page() const {
    CScreen page(start, width, height, stride, format);
    page.AttachDevice(this);
    return page;
}

}  // namespace Vantor
