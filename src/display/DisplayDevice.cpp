// SPDX-License-Identifier: MIT
#include "DisplayDevice.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "DrmCard.h"
#include "DrmDevice.h"
#include "FbdevDevice.h"

namespace Vantor {

namespace {

const char* const kClassName = "CFramebuffer";

}  // namespace

// An fbdev node is asked first, exactly as it always was, so an fbdev device never
// receives a request of another kind; a node that does not answer it is asked whether
// it is a DRM card before the fbdev failure is reported.
CDisplayDevice* CDisplayDevice::Open(const char* path) {
    const int fd = open(path, O_RDWR | O_CLOEXEC);
    if (fd < 0) {
        printf("%s: can't access frame buffer device at %s\n", kClassName, path);
        return nullptr;
    }
    std::unique_ptr<CDisplayDevice> device;
    try {
        device.reset(Identify(fd, path));
    } catch (...) {
        if (fd > 0) close(fd);  // no device took the descriptor over
        throw;
    }
    if (device == nullptr) {
        if (fd > 0) close(fd);
        return nullptr;
    }
    // From here the device owns the descriptor and gives back all it took on the way out.
    return device->Start(path) ? device.release() : nullptr;
}

CDisplayDevice* CDisplayDevice::Identify(int fd, const char* path) {
    fb_var_screeninfo var;
    std::memset(&var, 0, sizeof(var));
    const int result = ioctl(fd, FBIOGET_VSCREENINFO, &var);
    if (result >= 0) return new CFbdevDevice(fd, var);
    std::string driver;
    if (CDrmCard::Identify(fd, driver)) return new CDrmDevice(fd, driver);
    printf("%s: cannot access variable screen info from %s: %d\n", kClassName, path, result);
    return nullptr;
}

CScreen CDisplayDevice::Page() const {
    CScreen page(start, width, height, stride, format);
    page.AttachDevice(this);
    return page;
}

}  // namespace Vantor
