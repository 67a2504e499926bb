// The system calls as the program sees them. Each one serves virtual paths and
// descriptors itself and passes everything else to the real call unchanged.
#include <errno.h>
#include <fcntl.h>
#include <linux/fb.h>
#include <stdarg.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/mman.h>

#include <string>

#include "RealCalls.h"
#include "VirtualSystem.h"

using VantorPlatform::FramebufferDevice;
using VantorPlatform::RealCalls;
using VantorPlatform::VirtualSystem;

#define VP_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

// A separate function, since the C library declares these paths never null and the
// compiler would refuse the test inline; a buggy program may still pass one.
bool IsAbsolute(const char* path) {
    return path != nullptr && path[0] == '/';
}

mode_t ModeArgument(int flags, va_list args) {
    return (flags & (O_CREAT | O_TMPFILE)) ? static_cast<mode_t>(va_arg(args, int)) : 0;
}

int OpenPath(const char* path, int flags, mode_t mode) {
    std::string real;
    if (!VirtualSystem::Get().Redirect(path, real)) return RealCalls::Open(path, flags, mode);
    if (VirtualSystem::Get().RefuseOpen(path)) {
        errno = ENOENT;
        return -1;
    }
    const int fd = RealCalls::Open(real.c_str(), flags, mode);
    VirtualSystem::Get().Opened(path, fd);
    return fd;
}

int OpenAt(int dir, const char* path, int flags, mode_t mode) {
    if (IsAbsolute(path)) return OpenPath(path, flags, mode);
    return RealCalls::OpenAt(dir, path, flags, mode);
}

const char* Redirected(const char* path, std::string& real) {
    return VirtualSystem::Get().Redirect(path, real) ? real.c_str() : path;
}

void FillVariable(const vp_screen& screen, fb_var_screeninfo* info) {
    memset(info, 0, sizeof(*info));
    info->xres = unsigned(screen.xres);
    info->yres = unsigned(screen.yres);
    info->xres_virtual = unsigned(screen.xres_virtual);
    info->yres_virtual = unsigned(screen.yres_virtual);
    info->bits_per_pixel = unsigned(screen.bits_per_pixel);
    info->red = {16, 8, 0};
    info->green = {8, 8, 0};
    info->blue = {0, 8, 0};
}

void FillFixed(const FramebufferDevice& device, fb_fix_screeninfo* info) {
    memset(info, 0, sizeof(*info));
    strncpy(info->id, "vantor-virt", sizeof(info->id) - 1);
    info->smem_len = unsigned(device.size);
    info->line_length = unsigned(device.screen.line_length);
    info->type = FB_TYPE_PACKED_PIXELS;
    info->visual = FB_VISUAL_TRUECOLOR;
}

int FramebufferIoctl(FramebufferDevice& device, unsigned long request, void* argument) {
    if (request == FBIOGET_VSCREENINFO && !(device.failures & VP_FAIL_VSCREENINFO)) {
        FillVariable(device.screen, static_cast<fb_var_screeninfo*>(argument));
        return 0;
    }
    if (request == FBIOGET_FSCREENINFO && !(device.failures & VP_FAIL_FSCREENINFO)) {
        FillFixed(device, static_cast<fb_fix_screeninfo*>(argument));
        return 0;
    }
    errno = EINVAL;
    return -1;
}

}  // namespace

// The variadic mode argument, read the same way for the whole open family.
#define VP_READ_MODE(flags, mode)         \
    mode_t mode;                          \
    {                                     \
        va_list args;                     \
        va_start(args, flags);            \
        mode = ModeArgument(flags, args); \
        va_end(args);                     \
    }

VP_EXPORT int open(const char* path, int flags, ...) {
    VP_READ_MODE(flags, mode);
    return OpenPath(path, flags, mode);
}
VP_EXPORT int open64(const char* path, int flags, ...) {
    VP_READ_MODE(flags, mode);
    return OpenPath(path, flags | O_LARGEFILE, mode);
}
VP_EXPORT int __open_2(const char* path, int flags) {
    return OpenPath(path, flags, 0);
}
VP_EXPORT int __open64_2(const char* path, int flags) {
    return OpenPath(path, flags, 0);
}

VP_EXPORT int openat(int dir, const char* path, int flags, ...) {
    VP_READ_MODE(flags, mode);
    return OpenAt(dir, path, flags, mode);
}
VP_EXPORT int openat64(int dir, const char* path, int flags, ...) {
    VP_READ_MODE(flags, mode);
    return OpenAt(dir, path, flags, mode);
}
VP_EXPORT int __openat_2(int dir, const char* path, int flags) {
    return OpenAt(dir, path, flags, 0);
}
VP_EXPORT int __openat64_2(int dir, const char* path, int flags) {
    return OpenAt(dir, path, flags, 0);
}

VP_EXPORT FILE* fopen(const char* path, const char* mode) {
    std::string real;
    return RealCalls::Fopen(Redirected(path, real), mode);
}

VP_EXPORT FILE* fopen64(const char* path, const char* mode) {
    return fopen(path, mode);
}

VP_EXPORT int stat(const char* path, struct stat* status) {
    std::string real;
    return RealCalls::Stat(Redirected(path, real), status);
}

VP_EXPORT int stat64(const char* path, struct stat64* status) {
    std::string real;
    return RealCalls::Stat64(Redirected(path, real), status);
}

VP_EXPORT int lstat(const char* path, struct stat* status) {
    std::string real;
    return RealCalls::Lstat(Redirected(path, real), status);
}

VP_EXPORT int lstat64(const char* path, struct stat64* status) {
    std::string real;
    return RealCalls::Lstat64(Redirected(path, real), status);
}

VP_EXPORT int access(const char* path, int mode) {
    std::string real;
    return RealCalls::Access(Redirected(path, real), mode);
}

VP_EXPORT int ioctl(int fd, unsigned long request, ...) {
    va_list args;
    va_start(args, request);
    void* argument = va_arg(args, void*);
    va_end(args);
    if (FramebufferDevice* device = VirtualSystem::Get().FramebufferOf(fd)) {
        return FramebufferIoctl(*device, request, argument);
    }
    return RealCalls::Ioctl(fd, request, argument);
}

namespace {

// Both widths of mmap share the failure injection and the tracking of device mappings.
template <typename Offset, typename Call>
void* MapWith(Call call, void* address, size_t length, int protection, int flags, int fd,
              Offset offset) {
    FramebufferDevice* device = VirtualSystem::Get().FramebufferOf(fd);
    if (device != nullptr && (device->failures & VP_FAIL_MMAP)) {
        errno = ENOMEM;
        return MAP_FAILED;
    }
    void* mapped = call(address, length, protection, flags, fd, offset);
    if (mapped != MAP_FAILED) VirtualSystem::Get().Mapped(fd, mapped);
    return mapped;
}

}  // namespace

VP_EXPORT void* mmap(void* address, size_t length, int protection, int flags, int fd,
                     off_t offset) {
    return MapWith(RealCalls::Mmap, address, length, protection, flags, fd, offset);
}

VP_EXPORT void* mmap64(void* address, size_t length, int protection, int flags, int fd,
                       off64_t offset) {
    return MapWith(RealCalls::Mmap64, address, length, protection, flags, fd, offset);
}

VP_EXPORT int munmap(void* address, size_t length) {
    VirtualSystem::Get().Unmapping(address);
    return RealCalls::Munmap(address, length);
}

VP_EXPORT int close(int fd) {
    VirtualSystem::Get().Closing(fd);
    return RealCalls::Close(fd);
}

VP_EXPORT int select(int nfds, fd_set* readSet, fd_set* writeSet, fd_set* exceptSet,
                     struct timeval* timeout) {
    VirtualSystem::Get().BeforeWait(nfds, readSet);
    return RealCalls::Select(nfds, readSet, writeSet, exceptSet, timeout);
}
