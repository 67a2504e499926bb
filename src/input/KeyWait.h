// SPDX-License-Identifier: MIT
#ifndef VANTOR_KEYWAIT_H
#define VANTOR_KEYWAIT_H

#include <poll.h>

#include <cstdint>

namespace Vantor {

// Waiting on event nodes with a time-out in seconds, shared by the keypad of one device
// and the group of several.
namespace KeyWait {

// The monotonic clock in nanoseconds: deadlines must not move with the wall clock.
int64_t NowNanoseconds();

// The wait in whole nanoseconds, or -1 for a time-out that fails at once (negative or
// NaN); anything beyond about 68 years is that long.
int64_t WaitNanoseconds(float timeout);

// ppoll on the descriptors until one is ready or the deadline passes; a signal does not
// end the wait early. Returns what ppoll returned last (0 at the deadline).
int PollUntil(pollfd* watched, nfds_t count, int64_t deadline);

}  // namespace KeyWait

}  // namespace Vantor

#endif
