// SPDX-License-Identifier: MIT
#include "KeyWait.h"

#include <algorithm>
#include <cerrno>
#include <ctime>

namespace Vantor {

namespace KeyWait {

namespace {

const int64_t kNanosPerSecond = 1000000000;
// The longest single wait, about 68 years: its seconds still fit a 32-bit time_t, and
// a deadline this far ahead cannot overflow the monotonic clock's nanoseconds.
const double kLongestWaitSeconds = 2147483520.0;

}  // namespace

int64_t NowNanoseconds() {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t(now.tv_sec) * kNanosPerSecond + now.tv_nsec;
}

// The comparisons come before any conversion, so +-inf and 1e30 convert nothing out of
// range.
int64_t WaitNanoseconds(float timeout) {
    if (!(timeout >= 0.0f)) return -1;
    const double seconds = std::min(static_cast<double>(timeout), kLongestWaitSeconds);
    return static_cast<int64_t>(seconds * kNanosPerSecond);
}

// poll rather than select: a descriptor number above 1023 does not fit select's set.
// Each retry after a signal gets only the time that is left.
int PollUntil(pollfd* watched, nfds_t count, int64_t deadline) {
    for (;;) {
        const int64_t left = std::max<int64_t>(deadline - NowNanoseconds(), 0);
        timespec span;
        span.tv_sec = static_cast<time_t>(left / kNanosPerSecond);
        span.tv_nsec = static_cast<long>(left % kNanosPerSecond);
        const int ready = ppoll(watched, count, &span, nullptr);
        if (ready != -1 || errno != EINTR) return ready;
    }
}

}  // namespace KeyWait

}  // namespace Vantor
