#include "vantor/Keypad.h"

#include <fcntl.h>
#include <linux/input.h>
#include <sys/select.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

namespace Vantor {

namespace {

const int kCandidates = 9;  // input0 to input8

std::string ReadWholeFile(const char* path, bool& opened) {
    std::ifstream file(path);
    opened = file.is_open();
    if (!opened) return std::string();
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// Splits seconds into the record select wants, truncating both parts toward zero.
// A NaN becomes a negative record, which select refuses like any negative time-out;
// a time-out beyond what an int holds is cut to that.
timeval ToTimeval(float timeout) {
    if (std::isnan(timeout)) timeout = -1.0f;
    if (timeout > 2147483520.0f) timeout = 2147483520.0f;
    float whole = 0.0f;
    const float fraction = modff(timeout, &whole);
    timeval tv;
    tv.tv_sec = static_cast<int>(whole);
    tv.tv_usec = static_cast<int>(static_cast<double>(fraction) * 1000000.0);
    return tv;
}

}  // namespace

CKeypad::CKeypad() : pDevicePath(nullptr), fd(-1) {}

CKeypad::~CKeypad() {
    if (fd > 0) {
        close(fd);
        fd = -1;
    }
    delete[] pDevicePath;
    pDevicePath = nullptr;
}

int CKeypad::getKey() {
    return 0;
}

// The kernel publishes each input device's name under /sys/class/input; a name that
// merely begins with the wanted text matches, so the trailing newline and any
// suffix the driver adds do not matter.
int CKeypad::FindDevice(const char* name) {
    const size_t length = std::strlen(name);
    for (int n = 0; n < kCandidates; ++n) {
        char namePath[64];
        std::snprintf(namePath, sizeof(namePath), "/sys/class/input/input%1d/name", n);
        bool opened = false;
        const std::string contents = ReadWholeFile(namePath, opened);
        if (!opened || contents.size() < length) continue;
        if (std::strncmp(contents.c_str(), name, length) != 0) continue;
        char eventPath[64];
        std::snprintf(eventPath, sizeof(eventPath), "/dev/input/event%1d", n);
        char* path = new char[std::strlen(eventPath) + 1];
        std::strcpy(path, eventPath);
        delete[] pDevicePath;
        pDevicePath = path;
        return 0;
    }
    return -2;
}

int CKeypad::OpenDevice() {
    if (pDevicePath == nullptr) return -2;
    const int opened = open(pDevicePath, O_RDONLY);
    if (opened <= 0) {
        if (opened == 0) close(opened);  // descriptor 0 does not count; don't leak it
        return -2;
    }
    if (fd > 0) close(fd);
    fd = opened;
    return 0;
}

int CKeypad::WaitKeyEvent(float timeout) {
    fd_set readSet;
    FD_ZERO(&readSet);
    // A descriptor beyond the set's capacity cannot be waited on; it is treated as
    // no device rather than written past the set.
    if (fd >= 0 && fd < FD_SETSIZE) FD_SET(fd, &readSet);
    timeval tv = ToTimeval(timeout);
    int ready;
    do {
        // Linux leaves the unspent time in tv, so a retry keeps the original bound.
        ready = select(FD_SETSIZE, &readSet, nullptr, nullptr, &tv);
    } while (ready == -1 && errno == EINTR);
    if (ready != 1) return -1;

    input_event event;
    if (read(fd, &event, sizeof(event)) != static_cast<ssize_t>(sizeof(event))) return -1;
    if (event.type == EV_KEY && event.value == 1) return event.code;
    return -1;
}

}  // namespace Vantor
