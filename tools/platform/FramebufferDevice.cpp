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

size_t BytesPerPixel(const vp_screen& screen) {
    return size_t(screen.bits_per_pixel + 7) / 8;
}

// The library maps xres_virtual * yres_virtual * bytes per pixel whatever the line
// length says, so the memory covers both.
size_t MemorySize(const vp_screen& screen) {
    const size_t byLines = size_t(screen.line_length) * size_t(screen.yres_virtual);
    const size_t byPixels =
        size_t(screen.xres_virtual) * size_t(screen.yres_virtual) * BytesPerPixel(screen);
    return byLines > byPixels ? byLines : byPixels;
}

}  // namespace

FramebufferDevice::~FramebufferDevice() {
    if (view != nullptr) RealCalls::Munmap(view, size);
    // Descriptors the program holds keep the memory; the name goes.
    if (!file.empty() && !shared) unlink(file.c_str());
}

bool FramebufferDevice::IsValid(const vp_screen& screen) {
    return screen.xres > 0 && screen.yres > 0 && screen.xres_virtual > 0 &&
           screen.yres_virtual > 0 && screen.bits_per_pixel > 0 && screen.bits_per_pixel <= 32 &&
           screen.line_length >= 0;
}

bool FramebufferDevice::Create(const std::string& realPath, const vp_screen& wanted,
                               bool isShared) {
    screen = wanted;
    shared = isShared;
    if (screen.line_length == 0)
        screen.line_length = int(screen.xres_virtual * BytesPerPixel(screen));
    size = MemorySize(screen);
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

bool FramebufferDevice::AnswerIoctl(unsigned long request, void* argument, int& error) const {
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

// XRGB8888 (RGB565 for 16 bits), the layouts of the panels the library drives.
void FramebufferDevice::FillVariable(void* argument) const {
    fb_var_screeninfo info;
    std::memset(&info, 0, sizeof(info));
    info.xres = unsigned(screen.xres);
    info.yres = unsigned(screen.yres);
    info.xres_virtual = unsigned(screen.xres_virtual);
    info.yres_virtual = unsigned(screen.yres_virtual);
    info.bits_per_pixel = unsigned(screen.bits_per_pixel);
    if (screen.bits_per_pixel == 16) {
        info.red = {11, 5, 0};
        info.green = {5, 6, 0};
        info.blue = {0, 5, 0};
    } else {
        info.red = {16, 8, 0};
        info.green = {8, 8, 0};
        info.blue = {0, 8, 0};
    }
    std::memcpy(argument, &info, sizeof(info));
}

void FramebufferDevice::FillFixed(void* argument) const {
    fb_fix_screeninfo info;
    std::memset(&info, 0, sizeof(info));
    std::strncpy(info.id, "vantor-virt", sizeof(info.id) - 1);
    info.smem_len = unsigned(size);
    info.line_length = unsigned(screen.line_length);
    info.type = FB_TYPE_PACKED_PIXELS;
    info.visual = FB_VISUAL_TRUECOLOR;
    std::memcpy(argument, &info, sizeof(info));
}

}  // namespace VantorPlatform
