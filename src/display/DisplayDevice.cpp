// SPDX-License-Identifier: MIT
#include "DisplayDevice.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

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
    UniqueFd node = UniqueFd::Open(path, O_RDWR);
    if (!node.IsOpen()) {
        printf("%s: can't access frame buffer device at %s\n", kClassName, path);
        return nullptr;
    }
    // The node is closed here unless a device took it over; from then on the device
    // gives back all it took on the way out.
    std::unique_ptr<CDisplayDevice> device(Identify(node, path));
    return device != nullptr && device->Start(path) ? device.release() : nullptr;
}

CDisplayDevice* CDisplayDevice::Identify(UniqueFd& node, const char* path) {
    const int fd = node.Get();
    fb_var_screeninfo var;
    std::memset(&var, 0, sizeof(var));
    const int result = ioctl(fd, FBIOGET_VSCREENINFO, &var);
    if (result >= 0) return new CFbdevDevice(std::move(node), var);
    std::string driver;
    if (CDrmCard::Identify(fd, driver)) return new CDrmDevice(std::move(node), driver);
    printf("%s: cannot access variable screen info from %s: %d\n", kClassName, path, result);
    return nullptr;
}

CScreen CDisplayDevice::Page() const {
    CScreen page(start, width, height, stride, format);
    page.AttachDevice(this);
    return page;
}

}  // namespace Vantor
