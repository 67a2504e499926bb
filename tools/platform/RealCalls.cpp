// SPDX-License-Identifier: MIT
#include "RealCalls.h"

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace VantorPlatform {

namespace {

// Set while this thread is inside dlsym: a call that arrives then came from dlsym (or
// an allocator it uses) and must not ask dlsym again.
__thread int resolving = 0;

void* Lookup(std::atomic<void*>& slot, const char* name) {
    void* found = slot.load(std::memory_order_acquire);
    if (found != nullptr) return found;
    ++resolving;
    found = dlsym(RTLD_NEXT, name);
    --resolving;
    if (found == nullptr) {
        // stdio may itself be what is missing: plain writes only.
        const char prefix[] = "vantor-platform: no definition of ";
        (void)!write(STDERR_FILENO, prefix, sizeof(prefix) - 1);
        (void)!write(STDERR_FILENO, name, std::strlen(name));
        (void)!write(STDERR_FILENO, " after this library\n", 20);
        std::abort();
    }
    slot.store(found, std::memory_order_release);
    return found;
}

template <typename Function>
Function Next(std::atomic<void*>& slot, const char* name) {
    return reinterpret_cast<Function>(Lookup(slot, name));
}

// Only the calls an allocator or the dynamic linker could make have a way to the kernel
// during a lookup; anything else fails there rather than recursing.
int Unavailable() {
    errno = ENOSYS;
    return -1;
}

FILE* NoStream() {
    errno = ENOSYS;
    return nullptr;
}

void* RawMmap(void* address, size_t length, int protection, int flags, int fd, long long offset) {
#ifdef SYS_mmap2
    return reinterpret_cast<void*>(
        syscall(SYS_mmap2, address, length, protection, flags, fd, long(offset >> 12)));
#else
    return reinterpret_cast<void*>(
        syscall(SYS_mmap, address, length, protection, flags, fd, long(offset)));
#endif
}

// Constant-initialised, so they are valid before any constructor of ours has run.
std::atomic<void*> openSlot{nullptr}, openAtSlot{nullptr}, fopenSlot{nullptr}, fopen64Slot{nullptr},
    statSlot{nullptr}, stat64Slot{nullptr}, lstatSlot{nullptr}, lstat64Slot{nullptr},
    accessSlot{nullptr}, ioctlSlot{nullptr}, mmapSlot{nullptr}, mmap64Slot{nullptr},
    munmapSlot{nullptr}, closeSlot{nullptr}, selectSlot{nullptr};
std::atomic<void*> pollSlot{nullptr}, ppollSlot{nullptr}, readSlot{nullptr}, opendirSlot{nullptr};

}  // namespace

int RealCalls::Open(const char* path, int flags, mode_t mode) {
    if (resolving) return int(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
    return Next<int (*)(const char*, int, ...)>(openSlot, "open")(path, flags, mode);
}

int RealCalls::OpenAt(int dir, const char* path, int flags, mode_t mode) {
    if (resolving) return int(syscall(SYS_openat, dir, path, flags, mode));
    return Next<int (*)(int, const char*, int, ...)>(openAtSlot, "openat")(dir, path, flags, mode);
}

FILE* RealCalls::Fopen(const char* path, const char* mode) {
    if (resolving) return NoStream();
    return Next<FILE* (*)(const char*, const char*)>(fopenSlot, "fopen")(path, mode);
}

FILE* RealCalls::Fopen64(const char* path, const char* mode) {
    if (resolving) return NoStream();
    return Next<FILE* (*)(const char*, const char*)>(fopen64Slot, "fopen64")(path, mode);
}

int RealCalls::Stat(const char* path, struct stat* status) {
    if (resolving) return Unavailable();
    return Next<int (*)(const char*, struct stat*)>(statSlot, "stat")(path, status);
}

int RealCalls::Stat64(const char* path, struct stat64* status) {
    if (resolving) return Unavailable();
    return Next<int (*)(const char*, struct stat64*)>(stat64Slot, "stat64")(path, status);
}

int RealCalls::Lstat(const char* path, struct stat* status) {
    if (resolving) return Unavailable();
    return Next<int (*)(const char*, struct stat*)>(lstatSlot, "lstat")(path, status);
}

int RealCalls::Lstat64(const char* path, struct stat64* status) {
    if (resolving) return Unavailable();
    return Next<int (*)(const char*, struct stat64*)>(lstat64Slot, "lstat64")(path, status);
}

int RealCalls::Access(const char* path, int mode) {
    if (resolving) return Unavailable();
    return Next<int (*)(const char*, int)>(accessSlot, "access")(path, mode);
}

int RealCalls::Ioctl(int fd, unsigned long request, void* argument) {
    if (resolving) return int(syscall(SYS_ioctl, fd, request, argument));
    return Next<int (*)(int, unsigned long, ...)>(ioctlSlot, "ioctl")(fd, request, argument);
}

void* RealCalls::Mmap(void* address, size_t length, int protection, int flags, int fd,
                      off_t offset) {
    if (resolving) return RawMmap(address, length, protection, flags, fd, offset);
    using Call = void* (*)(void*, size_t, int, int, int, off_t);
    return Next<Call>(mmapSlot, "mmap")(address, length, protection, flags, fd, offset);
}

void* RealCalls::Mmap64(void* address, size_t length, int protection, int flags, int fd,
                        off64_t offset) {
    if (resolving) return RawMmap(address, length, protection, flags, fd, offset);
    using Call = void* (*)(void*, size_t, int, int, int, off64_t);
    return Next<Call>(mmap64Slot, "mmap64")(address, length, protection, flags, fd, offset);
}

int RealCalls::Munmap(void* address, size_t length) {
    if (resolving) return int(syscall(SYS_munmap, address, length));
    return Next<int (*)(void*, size_t)>(munmapSlot, "munmap")(address, length);
}

int RealCalls::Close(int fd) {
    if (resolving) return int(syscall(SYS_close, fd));
    return Next<int (*)(int)>(closeSlot, "close")(fd);
}

int RealCalls::Select(int nfds, fd_set* readSet, fd_set* writeSet, fd_set* exceptSet,
                      struct timeval* timeout) {
    if (resolving) return Unavailable();
    using Call = int (*)(int, fd_set*, fd_set*, fd_set*, struct timeval*);
    return Next<Call>(selectSlot, "select")(nfds, readSet, writeSet, exceptSet, timeout);
}

int RealCalls::Poll(struct pollfd* fds, nfds_t count, int timeout) {
    if (resolving) return Unavailable();
    return Next<int (*)(struct pollfd*, nfds_t, int)>(pollSlot, "poll")(fds, count, timeout);
}

int RealCalls::Ppoll(struct pollfd* fds, nfds_t count, const struct timespec* timeout,
                     const sigset_t* mask) {
    if (resolving) return Unavailable();
    using Call = int (*)(struct pollfd*, nfds_t, const struct timespec*, const sigset_t*);
    return Next<Call>(ppollSlot, "ppoll")(fds, count, timeout, mask);
}

// An allocator may read (a /proc file, say) while dlsym runs.
ssize_t RealCalls::Read(int fd, void* buffer, size_t size) {
    if (resolving) return syscall(SYS_read, fd, buffer, size);
    return Next<ssize_t (*)(int, void*, size_t)>(readSlot, "read")(fd, buffer, size);
}

DIR* RealCalls::Opendir(const char* path) {
    if (resolving) {
        errno = ENOSYS;
        return nullptr;
    }
    return Next<DIR* (*)(const char*)>(opendirSlot, "opendir")(path);
}

}  // namespace VantorPlatform
