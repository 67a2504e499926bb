// SPDX-License-Identifier: MIT
#include "FbdevDevice.h"

#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>

namespace Vantor {

namespace {

// Messages carry the name of the object the host created.
const char* const kClassName = "CFramebuffer";
// Far beyond any panel; keeps every pixel coordinate and row size well inside an int.
const unsigned kMaxSide = 65536;

}  // namespace

CFbdevDevice::CFbdevDevice(UniqueFd descriptor, const fb_var_screeninfo& var) : varInfo(var) {
    device = std::move(descriptor);
    std::memset(&fixInfo, 0, sizeof(fixInfo));
}

bool CFbdevDevice::Start(const char* path) {
    if (!ReadFixedInfo(path) || !HasDrawableFormat(path) || !HasUsableGeometry(path)) return false;
    return Map(path);
}

CFbdevDevice::~CFbdevDevice() {
    if (memory != nullptr) munmap(memory, memoryBytes);
}

bool CFbdevDevice::ReadFixedInfo(const char* path) {
    const int result = ioctl(device.Get(), FBIOGET_FSCREENINFO, &fixInfo);
    if (result < 0) {
        printf("%s: cannot access fixed screen info from %s: %d\n", kClassName, path, result);
        return false;
    }
    return true;
}

bool CFbdevDevice::HasDrawableFormat(const char* path) {
    if (CPixelFormat::FromDevice(varInfo, format)) return true;
    printf(
        "%s: unsupported pixel layout on %s: %u bits per pixel, red %u/%u, green %u/%u, "
        "blue %u/%u (offset/length)\n",
        kClassName, path, varInfo.bits_per_pixel, varInfo.red.offset, varInfo.red.length,
        varInfo.green.offset, varInfo.green.length, varInfo.blue.offset, varInfo.blue.length);
    return false;
}

// The memory holds yres_virtual rows of line_length bytes (drivers that leave
// line_length at 0 mean unpadded rows); the visible page is xres x yres at the pan
// offsets, cut to the virtual area. Everything is checked in 64 bits before any of it
// becomes an address.
bool CFbdevDevice::HasUsableGeometry(const char* path) {
    const uint64_t row = uint64_t(varInfo.xres_virtual) * format.getBytesPerPixel();
    const uint64_t line = fixInfo.line_length != 0 ? fixInfo.line_length : row;
    const uint64_t bytes = line * varInfo.yres_virtual;
    const bool usable =
        varInfo.xres_virtual > 0 && varInfo.yres_virtual > 0 && varInfo.xres > 0 &&
        varInfo.yres > 0 && varInfo.xres_virtual <= kMaxSide && varInfo.yres_virtual <= kMaxSide &&
        varInfo.xoffset < varInfo.xres_virtual && varInfo.yoffset < varInfo.yres_virtual &&
        line >= row && bytes <= SIZE_MAX && (fixInfo.smem_len == 0 || fixInfo.smem_len >= bytes);
    if (!usable) {
        printf(
            "%s: unsupported screen geometry on %s: %ux%u at %u,%u in %ux%u, %u bytes per "
            "line, %u bytes of memory\n",
            kClassName, path, varInfo.xres, varInfo.yres, varInfo.xoffset, varInfo.yoffset,
            varInfo.xres_virtual, varInfo.yres_virtual, fixInfo.line_length, fixInfo.smem_len);
        return false;
    }
    memoryBytes = size_t(bytes);
    width = int(std::min(varInfo.xres, varInfo.xres_virtual - varInfo.xoffset));
    height = int(std::min(varInfo.yres, varInfo.yres_virtual - varInfo.yoffset));
    stride = size_t(line);
    return true;
}

bool CFbdevDevice::Map(const char* path) {
    void* mapped = mmap(nullptr, memoryBytes, PROT_READ | PROT_WRITE, MAP_SHARED, device.Get(), 0);
    if (mapped == MAP_FAILED) {
        printf("%s: cannot map frame buffer %s to memory\n", kClassName, path);
        return false;
    }
    memory = mapped;
    start = static_cast<uint8_t*>(mapped) + size_t(varInfo.yoffset) * stride +
            size_t(varInfo.xoffset) * format.getBytesPerPixel();
    return true;
}

void CFbdevDevice::Describe(fb_var_screeninfo& var, fb_fix_screeninfo& fix) const {
    var = varInfo;
    fix = fixInfo;
}

// The current offsets are panned to again, so nothing moves: some drivers (DRM with
// fbdev emulation among them) show nothing new until the display is panned once. The
// whole page is panned whatever changed. Drivers without panning refuse it; the pixels
// are in memory either way, so the result is not used. The driver may write the
// structure back, hence the copy.
void CFbdevDevice::Show(int, int, int, int) const {
    fb_var_screeninfo info = varInfo;
    ioctl(device.Get(), FBIOPAN_DISPLAY, &info);
}

}  // namespace Vantor
