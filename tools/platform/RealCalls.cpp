#include "RealCalls.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

namespace VantorPlatform {

namespace {

template <typename T>
void Resolve(T& slot, const char* name) {
    slot = reinterpret_cast<T>(dlsym(RTLD_NEXT, name));
    if (slot == nullptr) {
        std::fprintf(stderr, "vantor-platform: cannot find %s in the C library\n", name);
        std::abort();
    }
}

RealCalls Load() {
    RealCalls calls;
    Resolve(calls.open, "open");
    Resolve(calls.openat, "openat");
    Resolve(calls.fopen, "fopen");
    Resolve(calls.fopen64, "fopen64");
    Resolve(calls.stat, "stat");
    Resolve(calls.lstat, "lstat");
    Resolve(calls.stat64, "stat64");
    Resolve(calls.lstat64, "lstat64");
    Resolve(calls.access, "access");
    Resolve(calls.ioctl, "ioctl");
    Resolve(calls.mmap, "mmap");
    Resolve(calls.mmap64, "mmap64");
    Resolve(calls.munmap, "munmap");
    Resolve(calls.close, "close");
    Resolve(calls.select, "select");
    return calls;
}

}  // namespace

const RealCalls& Real() {
    static const RealCalls calls = Load();
    return calls;
}

}  // namespace VantorPlatform
