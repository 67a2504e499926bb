// SPDX-License-Identifier: MIT
#ifndef VANTOR_PLATFORM_FAULTPLAN_H
#define VANTOR_PLATFORM_FAULTPLAN_H

#include <cstddef>

namespace VantorPlatform {

// Faults a test arms for chosen system calls: the N-th use of a call from now fails
// with a chosen errno, or (for read and write) moves only part of what was asked.
// Each armed fault fires once. Every call of that name in the process counts, so a
// test arms a fault just before the operation it examines.
class FaultPlan {
  public:
    enum Call { kOpen, kRead, kWrite, kFsync, kRename, kIoctl, kMmap, kPoll, kCalls };

    static int CallFromName(const char* name);  // -1 for a call we cannot fault
    static void Fail(int call, int error, int nth);
    static void Shorten(int call, int nth);
    static void Clear();

    // Called by an interposer on every use: the errno to fail with, or 0. A shortened
    // use gets its length cut to half (at least one byte).
    static int Check(Call call);
    static size_t Length(Call call, size_t length);
};

}  // namespace VantorPlatform

#endif
