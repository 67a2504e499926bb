// SPDX-License-Identifier: MIT
// The system calls as the program sees them. Each one serves virtual paths and
// descriptors itself and passes everything else to the real call unchanged, with the
// real call's errno; our own bookkeeping never leaves an errno behind.
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <sys/ioctl.h>
#include <sys/mman.h>

#include <string>

#include "FaultPlan.h"
#include "RealCalls.h"
#include "VirtualSystem.h"

using VantorPlatform::DescriptorTable;
using VantorPlatform::FaultPlan;
using VantorPlatform::RealCalls;
using VantorPlatform::VirtualPaths;
using VantorPlatform::VirtualSystem;

#define VP_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

// Keeps the caller's errno across our bookkeeping.
class KeptErrno {
  public:
    KeptErrno() : saved(errno) {}
    ~KeptErrno() { errno = saved; }

  private:
    int saved;
};

VirtualSystem& System() {
    return VirtualSystem::Get();
}

int Failed(int error) {
    errno = error;
    return -1;
}

void* MapFailed(int error) {
    errno = error;
    return MAP_FAILED;
}

mode_t ModeArgument(int flags, va_list args) {
    return (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE
               ? static_cast<mode_t>(va_arg(args, int))
               : 0;
}

// The real path for a virtual one, or the path itself; the common case costs no lock.
const char* Redirected(const char* path, std::string& real) {
    if (!VirtualPaths::MayBeVirtual(path)) return path;
    KeptErrno kept;
    return System().Redirect(path, real) ? real.c_str() : path;
}

int OpenVirtual(const char* path, const std::string& real, int flags, mode_t mode) {
    if (const int refused = System().RefusedOpen(path)) return Failed(refused);
    const int fd = RealCalls::Open(real.c_str(), flags, mode);
    if (fd >= 0) {
        KeptErrno kept;
        System().Opened(path, fd);
    }
    return fd;
}

int OpenPath(const char* path, int flags, mode_t mode) {
    if (const int error = FaultPlan::Check(FaultPlan::kOpen)) return Failed(error);
    std::string real;
    if (Redirected(path, real) == path) return RealCalls::Open(path, flags, mode);
    return OpenVirtual(path, real, flags, mode);
}

// An absolute path ignores the directory descriptor, so it is served like open's.
int OpenAt(int dir, const char* path, int flags, mode_t mode) {
    if (VirtualPaths::MayBeVirtual(path)) return OpenPath(path, flags, mode);
    if (const int error = FaultPlan::Check(FaultPlan::kOpen)) return Failed(error);
    return RealCalls::OpenAt(dir, path, flags, mode);
}

FILE* OpenStream(FILE* (*open)(const char*, const char*), const char* path, const char* mode) {
    std::string real;
    const char* target = Redirected(path, real);
    if (target != path) {
        if (const int refused = System().RefusedOpen(path)) {
            errno = refused;
            return nullptr;
        }
    }
    return open(target, mode);
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

// The checked forms that _FORTIFY_SOURCE builds call when there is no mode.
VP_EXPORT int __open_2(const char* path, int flags) {
    return OpenPath(path, flags, 0);
}

VP_EXPORT int __open64_2(const char* path, int flags) {
    return OpenPath(path, flags | O_LARGEFILE, 0);
}

VP_EXPORT int openat(int dir, const char* path, int flags, ...) {
    VP_READ_MODE(flags, mode);
    return OpenAt(dir, path, flags, mode);
}

VP_EXPORT int openat64(int dir, const char* path, int flags, ...) {
    VP_READ_MODE(flags, mode);
    return OpenAt(dir, path, flags | O_LARGEFILE, mode);
}

VP_EXPORT int __openat_2(int dir, const char* path, int flags) {
    return OpenAt(dir, path, flags, 0);
}

VP_EXPORT int __openat64_2(int dir, const char* path, int flags) {
    return OpenAt(dir, path, flags | O_LARGEFILE, 0);
}

// The C library's fopen opens through its own internal open, which is out of our reach.
VP_EXPORT FILE* fopen(const char* path, const char* mode) {
    return OpenStream(RealCalls::Fopen, path, mode);
}

VP_EXPORT FILE* fopen64(const char* path, const char* mode) {
    return OpenStream(RealCalls::Fopen64, path, mode);
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
    if (const int error = FaultPlan::Check(FaultPlan::kIoctl)) return Failed(error);
    if (DescriptorTable::HasDescriptors()) {
        int error = 0;
        bool answered;
        {
            KeptErrno kept;
            answered = System().AnswerIoctl(fd, request, argument, error);
        }
        if (answered && error == 0) return 0;
        if (answered) return Failed(error);
    }
    return RealCalls::Ioctl(fd, request, argument);
}

namespace {

int RefusedMap(int fd) {
    if (fd < 0 || !DescriptorTable::HasDescriptors()) return 0;
    KeptErrno kept;
    return System().RefusedMap(fd);
}

// Also for mappings that are not ours: one may take the place of a device mapping that
// went away without munmap (an exec'd image, a MAP_FIXED over it).
void* Mapped(void* address, int fd) {
    if (address != MAP_FAILED &&
        (DescriptorTable::HasDescriptors() || DescriptorTable::HasMappings())) {
        KeptErrno kept;
        System().Mapped(fd, address);
    }
    return address;
}

}  // namespace

VP_EXPORT void* mmap(void* address, size_t length, int protection, int flags, int fd,
                     off_t offset) {
    if (const int error = FaultPlan::Check(FaultPlan::kMmap)) return MapFailed(error);
    if (const int refused = RefusedMap(fd)) return MapFailed(refused);
    return Mapped(RealCalls::Mmap(address, length, protection, flags, fd, offset), fd);
}

VP_EXPORT void* mmap64(void* address, size_t length, int protection, int flags, int fd,
                       off64_t offset) {
    if (const int error = FaultPlan::Check(FaultPlan::kMmap)) return MapFailed(error);
    if (const int refused = RefusedMap(fd)) return MapFailed(refused);
    return Mapped(RealCalls::Mmap64(address, length, protection, flags, fd, offset), fd);
}

VP_EXPORT int munmap(void* address, size_t length) {
    if (DescriptorTable::HasMappings()) {
        KeptErrno kept;
        System().Unmapping(address);
    }
    return RealCalls::Munmap(address, length);
}

VP_EXPORT int close(int fd) {
    if (DescriptorTable::HasDescriptors()) {
        KeptErrno kept;
        System().Closing(fd);
    }
    return RealCalls::Close(fd);
}

VP_EXPORT int select(int nfds, fd_set* readSet, fd_set* writeSet, fd_set* exceptSet,
                     struct timeval* timeout) {
    if (DescriptorTable::HasDescriptors()) {
        KeptErrno kept;
        System().BeforeSelect(nfds, readSet, timeout);
    }
    return RealCalls::Select(nfds, readSet, writeSet, exceptSet, timeout);
}

namespace {

// A wait on a key node that could block: an infinite or positive time-out. A negative
// timespec is refused by the call itself, so it is not a wait at all.
bool PollCouldWait(const struct timespec* timeout) {
    return timeout == nullptr || timeout->tv_sec > 0 ||
           (timeout->tv_sec == 0 && timeout->tv_nsec > 0);
}

bool PollIsInvalid(const struct timespec* timeout) {
    return timeout != nullptr && (timeout->tv_sec < 0 || timeout->tv_nsec < 0);
}

}  // namespace

VP_EXPORT int poll(struct pollfd* fds, nfds_t count, int timeout) {
    if (const int error = FaultPlan::Check(FaultPlan::kPoll)) return Failed(error);
    if (!DescriptorTable::HasDescriptors()) return RealCalls::Poll(fds, count, timeout);
    {
        KeptErrno kept;
        System().BeforePoll(fds, count, timeout != 0);
    }
    const int ready = RealCalls::Poll(fds, count, timeout);
    KeptErrno kept;
    return System().AfterPoll(fds, count, ready);
}

VP_EXPORT int ppoll(struct pollfd* fds, nfds_t count, const struct timespec* timeout,
                    const sigset_t* mask) {
    if (const int error = FaultPlan::Check(FaultPlan::kPoll)) return Failed(error);
    if (!DescriptorTable::HasDescriptors() || PollIsInvalid(timeout))
        return RealCalls::Ppoll(fds, count, timeout, mask);
    {
        KeptErrno kept;
        System().BeforePoll(fds, count, PollCouldWait(timeout));
    }
    const int ready = RealCalls::Ppoll(fds, count, timeout, mask);
    KeptErrno kept;
    return System().AfterPoll(fds, count, ready);
}

// A read fails or comes up short where a test armed that (FaultPlan); otherwise only an
// unplugged key node answers differently: evdev fails every read on it.
VP_EXPORT ssize_t read(int fd, void* buffer, size_t size) {
    if (const int error = FaultPlan::Check(FaultPlan::kRead)) return Failed(error);
    size = FaultPlan::Length(FaultPlan::kRead, size);
    if (DescriptorTable::HasDescriptors()) {
        bool unplugged;
        {
            KeptErrno kept;
            unplugged = System().IsUnplugged(fd);
        }
        if (unplugged) return Failed(ENODEV);
    }
    return RealCalls::Read(fd, buffer, size);
}

// The library lists an input device's directory to learn its event node's number.
VP_EXPORT DIR* opendir(const char* path) {
    std::string real;
    return RealCalls::Opendir(Redirected(path, real));
}
