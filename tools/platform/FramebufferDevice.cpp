// SPDX-License-Identifier: MIT
#include "FramebufferDevice.h"

#include <errno.h>
#include <fcntl.h>
#include <linux/fb.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "RealCalls.h"

namespace VantorPlatform {

namespace {

struct Layout {
    int depth;  // 0: any
    fb_bitfield red, green, blue;
};

// Indexed by the VP_ layout values.
const Layout kLayouts[VP_LAYOUT_COUNT] = {
    {32, {16, 8, 0}, {8, 8, 0}, {0, 8, 0}},  {32, {0, 8, 0}, {8, 8, 0}, {16, 8, 0}},
    {32, {24, 8, 0}, {16, 8, 0}, {8, 8, 0}}, {32, {8, 8, 0}, {16, 8, 0}, {24, 8, 0}},
    {24, {16, 8, 0}, {8, 8, 0}, {0, 8, 0}},  {24, {0, 8, 0}, {8, 8, 0}, {16, 8, 0}},
    {16, {11, 5, 0}, {5, 6, 0}, {0, 5, 0}},  {16, {0, 5, 0}, {5, 6, 0}, {11, 5, 0}},
    {8, {0, 8, 0}, {0, 8, 0}, {0, 8, 0}},    {0, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}},
};

// The layout the ioctl reports: an explicit one, or the usual one of the depth.
Layout LayoutOf(const vp_screen& screen) {
    if (screen.layout != VP_XRGB8888) return kLayouts[screen.layout];
    switch (screen.bits_per_pixel) {
        case 24:
            return kLayouts[VP_RGB888];
        case 16:
            return kLayouts[VP_RGB565];
        case 12:
            return {12, {8, 4, 0}, {4, 4, 0}, {0, 4, 0}};
        case 8:
            return kLayouts[VP_PALETTE8];
        default:
            return kLayouts[VP_XRGB8888];
    }
}

size_t BytesPerPixel(const vp_screen& screen) {
    return size_t(screen.bits_per_pixel + 7) / 8;
}

}  // namespace

FramebufferDevice::~FramebufferDevice() {
    if (view != nullptr) RealCalls::Munmap(view, size);
    // Descriptors the program holds keep the memory; the name goes.
    if (!file.empty() && !shared) unlink(file.c_str());
}

bool FramebufferDevice::IsValid(const vp_screen& screen) {
    if (screen.layout < 0 || screen.layout >= VP_LAYOUT_COUNT) return false;
    const int depth = kLayouts[screen.layout].depth;
    const int bits = screen.bits_per_pixel == 0 ? depth : screen.bits_per_pixel;
    const bool fits = screen.layout == VP_XRGB8888 || depth == 0 || bits == depth;
    return fits && screen.xres > 0 && screen.yres > 0 && screen.xres_virtual > 0 &&
           screen.yres_virtual > 0 && bits > 0 && bits <= 32 && screen.line_length >= 0 &&
           screen.xoffset >= 0 && screen.xoffset < screen.xres_virtual && screen.yoffset >= 0 &&
           screen.yoffset < screen.yres_virtual;
}

bool FramebufferDevice::Create(const std::string& realPath, const vp_screen& wanted,
                               bool isShared) {
    screen = wanted;
    shared = isShared;
    if (screen.bits_per_pixel == 0) screen.bits_per_pixel = kLayouts[screen.layout].depth;
    if (screen.line_length == 0)
        screen.line_length = int(screen.xres_virtual * BytesPerPixel(screen));
    size = size_t(screen.line_length) * size_t(screen.yres_virtual);
    const int fd = OpenMemory(realPath);
    if (fd < 0) return false;
    file = realPath;
    void* mapped = MAP_FAILED;
    if (Grow(fd))
        mapped = RealCalls::Mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    RealCalls::Close(fd);
    if (mapped == MAP_FAILED) return false;
    view = static_cast<uint32_t*>(mapped);
    return true;
}

// A private device starts from a new, black file (a plain file added there before keeps
// its readers); a shared one keeps what earlier processes drew.
int FramebufferDevice::OpenMemory(const std::string& realPath) const {
    if (shared) return RealCalls::Open(realPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    unlink(realPath.c_str());
    return RealCalls::Open(realPath.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
}

// Never shrinks: another process of a session may have a larger mapping of it.
bool FramebufferDevice::Grow(int fd) const {
    struct stat status;
    if (fstat(fd, &status) != 0) return false;
    return size_t(status.st_size) >= size || ftruncate(fd, off_t(size)) == 0;
}

bool FramebufferDevice::AnswerIoctl(unsigned long request, void* argument, int& error) {
    if (request == FBIOPAN_DISPLAY) {
        // Counted, never refused: the offsets stay where the screen was made.
        error = argument == nullptr ? EFAULT : 0;
        if (argument != nullptr) ++panCount;
        return true;
    }
    const int failure = request == FBIOGET_VSCREENINFO   ? VP_FAIL_VSCREENINFO
                        : request == FBIOGET_FSCREENINFO ? VP_FAIL_FSCREENINFO
                                                         : 0;
    if (failure == 0) return false;
    if ((failures & failure) != 0) {
        error = EINVAL;
    } else if (argument == nullptr) {
        error = EFAULT;
    } else if (failure == VP_FAIL_VSCREENINFO) {
        FillVariable(argument);
        error = 0;
    } else {
        FillFixed(argument);
        error = 0;
    }
    return true;
}

void FramebufferDevice::FillVariable(void* argument) const {
    fb_var_screeninfo info;
    std::memset(&info, 0, sizeof(info));
    info.xres = unsigned(screen.xres);
    info.yres = unsigned(screen.yres);
    info.xres_virtual = unsigned(screen.xres_virtual);
    info.yres_virtual = unsigned(screen.yres_virtual);
    info.xoffset = unsigned(screen.xoffset);
    info.yoffset = unsigned(screen.yoffset);
    info.bits_per_pixel = unsigned(screen.bits_per_pixel);
    const Layout layout = LayoutOf(screen);
    info.red = layout.red;
    info.green = layout.green;
    info.blue = layout.blue;
    std::memcpy(argument, &info, sizeof(info));
}

void FramebufferDevice::FillFixed(void* argument) const {
    fb_fix_screeninfo info;
    std::memset(&info, 0, sizeof(info));
    std::strncpy(info.id, "vantor-virt", sizeof(info.id) - 1);
    info.smem_len = unsigned(size);
    info.line_length = unsigned(screen.line_length);
    info.type = FB_TYPE_PACKED_PIXELS;
    info.visual = screen.bits_per_pixel == 8 ? FB_VISUAL_PSEUDOCOLOR : FB_VISUAL_TRUECOLOR;
    std::memcpy(argument, &info, sizeof(info));
}

}  // namespace VantorPlatform
