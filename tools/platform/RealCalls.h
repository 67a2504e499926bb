// SPDX-License-Identifier: MIT
#ifndef VANTOR_PLATFORM_REALCALLS_H
#define VANTOR_PLATFORM_REALCALLS_H

#include <dirent.h>
#include <poll.h>
#include <stdio.h>
#include <sys/select.h>
#include <sys/stat.h>
#include <sys/types.h>

namespace VantorPlatform {

// The definitions behind the ones this layer interposes: whatever follows us in the
// lookup order (the C library, or a sanitizer's interceptor in front of it). Each is
// found with dlsym(RTLD_NEXT) on its first use, so calls that arrive before any of our
// initialisation work, and a call that dlsym itself makes while we look one up goes
// straight to the kernel instead of back into dlsym.
class RealCalls {
  public:
    static int Open(const char* path, int flags, mode_t mode);
    static int OpenAt(int dir, const char* path, int flags, mode_t mode);
    static FILE* Fopen(const char* path, const char* mode);
    static FILE* Fopen64(const char* path, const char* mode);
    static int Stat(const char* path, struct stat* status);
    static int Stat64(const char* path, struct stat64* status);
    static int Lstat(const char* path, struct stat* status);
    static int Lstat64(const char* path, struct stat64* status);
    static int Access(const char* path, int mode);
    static int Ioctl(int fd, unsigned long request, void* argument);
    static void* Mmap(void* address, size_t length, int protection, int flags, int fd,
                      off_t offset);
    static void* Mmap64(void* address, size_t length, int protection, int flags, int fd,
                        off64_t offset);
    static int Munmap(void* address, size_t length);
    static int Close(int fd);
    static int Select(int nfds, fd_set* readSet, fd_set* writeSet, fd_set* exceptSet,
                      struct timeval* timeout);
    static int Poll(struct pollfd* fds, nfds_t count, int timeout);
    static int Ppoll(struct pollfd* fds, nfds_t count, const struct timespec* timeout,
                     const sigset_t* mask);
    static ssize_t Read(int fd, void* buffer, size_t size);
    static DIR* Opendir(const char* path);
};

}  // namespace VantorPlatform

#endif
