// SPDX-License-Identifier: MIT
// The records the TCA8418 driver sends for one change of a key: the scan code, the key
// record and the sync that ends the report. The platform layer's keypads and the
// simulator's session keypad both queue exactly these.
#ifndef VANTOR_PLATFORM_KEYRECORDS_H
#define VANTOR_PLATFORM_KEYRECORDS_H

#include <linux/input.h>
#include <sys/time.h>

#include <cstring>

namespace VantorPlatform {

struct KeyRecords {
    input_event records[3];
};

// A virtual keypad has no matrix, so the key code stands in for the scan code; readers
// of key codes pass over it either way. value: 1 press, 0 release.
inline KeyRecords MakeKeyRecords(int code, int value) {
    KeyRecords key;
    std::memset(&key, 0, sizeof(key));
    timeval now;
    gettimeofday(&now, nullptr);
    const __u16 types[3] = {EV_MSC, EV_KEY, EV_SYN};
    const __u16 codes[3] = {MSC_SCAN, static_cast<__u16>(code), SYN_REPORT};
    const __s32 values[3] = {code, value, 0};
    for (int i = 0; i < 3; ++i) {
        key.records[i].input_event_sec = now.tv_sec;
        key.records[i].input_event_usec = now.tv_usec;
        key.records[i].type = types[i];
        key.records[i].code = codes[i];
        key.records[i].value = values[i];
    }
    return key;
}

}  // namespace VantorPlatform

#endif
