#ifndef VANTOR_PLATFORM_REALCALLS_H
#define VANTOR_PLATFORM_REALCALLS_H

#include <stdio.h>
#include <sys/select.h>
#include <sys/stat.h>
#include <sys/types.h>

// The C library's own functions behind the ones this layer interposes, found once with
// dlsym(RTLD_NEXT) so that calls go to whatever comes after us (the C library, or a
// sanitizer's interceptor in front of it).
namespace VantorPlatform {

struct RealCalls {
    int (*open)(const char*, int, ...);
    int (*openat)(int, const char*, int, ...);
    FILE* (*fopen)(const char*, const char*);
    FILE* (*fopen64)(const char*, const char*);
    int (*stat)(const char*, struct stat*);
    int (*lstat)(const char*, struct stat*);
    int (*stat64)(const char*, struct stat64*);
    int (*lstat64)(const char*, struct stat64*);
    int (*access)(const char*, int);
    int (*ioctl)(int, unsigned long, ...);
    void* (*mmap)(void*, size_t, int, int, int, off_t);
    void* (*mmap64)(void*, size_t, int, int, int, off64_t);
    int (*munmap)(void*, size_t);
    int (*close)(int);
    int (*select)(int, fd_set*, fd_set*, fd_set*, struct timeval*);
};

const RealCalls& Real();

}  // namespace VantorPlatform

#endif
