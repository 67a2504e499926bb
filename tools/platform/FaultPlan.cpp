// SPDX-License-Identifier: MIT
#include "FaultPlan.h"

#include <atomic>
#include <cstring>

namespace VantorPlatform {

namespace {

const char* const kNames[FaultPlan::kCalls] = {"open",   "read",  "write", "fsync",
                                               "rename", "ioctl", "mmap",  "poll"};

// Counters are atomic so that the common case (nothing armed) costs one load, and a
// fault armed on one thread is seen on another.
struct Armed {
    std::atomic<int> failIn{0};  // uses left until the failure; 0 disarmed
    std::atomic<int> error{0};
    std::atomic<int> shortIn{0};
};

Armed armed[FaultPlan::kCalls];
std::atomic<int> armedCount{0};

// True on exactly the use that brings the countdown from 1 to 0.
bool CountDown(std::atomic<int>& counter) {
    int left = counter.load();
    while (left > 0 && !counter.compare_exchange_weak(left, left - 1)) {
    }
    if (left != 1) return false;
    armedCount.fetch_sub(1);
    return true;
}

}  // namespace

int FaultPlan::CallFromName(const char* name) {
    for (int call = 0; name != nullptr && call < kCalls; ++call) {
        if (std::strcmp(name, kNames[call]) == 0) return call;
    }
    return -1;
}

void FaultPlan::Fail(int call, int error, int nth) {
    armed[call].error.store(error);
    if (armed[call].failIn.exchange(nth) == 0) armedCount.fetch_add(1);
}

void FaultPlan::Shorten(int call, int nth) {
    if (armed[call].shortIn.exchange(nth) == 0) armedCount.fetch_add(1);
}

void FaultPlan::Clear() {
    for (Armed& each : armed) {
        each.failIn.store(0);
        each.shortIn.store(0);
    }
    armedCount.store(0);
}

int FaultPlan::Check(Call call) {
    if (armedCount.load(std::memory_order_relaxed) == 0) return 0;
    return CountDown(armed[call].failIn) ? armed[call].error.load() : 0;
}

size_t FaultPlan::Length(Call call, size_t length) {
    if (armedCount.load(std::memory_order_relaxed) == 0 || length < 2) return length;
    return CountDown(armed[call].shortIn) ? length / 2 : length;
}

}  // namespace VantorPlatform
