// SPDX-License-Identifier: MIT
// write, fsync and rename pass straight through unless a test armed a fault for them
// (FaultPlan); read, which also serves unplugged key nodes, is in Interposers.cpp. write
// and fsync go to the kernel directly: the dynamic linker and allocators use them, so
// they must work before any lookup could.
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>

#include "FaultPlan.h"

using VantorPlatform::FaultPlan;

#define VP_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

int Failed(int error) {
    errno = error;
    return -1;
}

}  // namespace

VP_EXPORT ssize_t write(int fd, const void* data, size_t length) {
    if (const int error = FaultPlan::Check(FaultPlan::kWrite)) return Failed(error);
    length = FaultPlan::Length(FaultPlan::kWrite, length);
    return syscall(SYS_write, fd, data, length);
}

VP_EXPORT int fsync(int fd) {
    if (const int error = FaultPlan::Check(FaultPlan::kFsync)) return Failed(error);
    return int(syscall(SYS_fsync, fd));
}

VP_EXPORT int rename(const char* from, const char* to) {
    if (const int error = FaultPlan::Check(FaultPlan::kRename)) return Failed(error);
    static std::atomic<void*> next{nullptr};
    if (next.load() == nullptr) next.store(dlsym(RTLD_NEXT, "rename"));
    return reinterpret_cast<int (*)(const char*, const char*)>(next.load())(from, to);
}
