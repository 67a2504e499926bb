#include "vantor/Keypad.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/input.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iterator>
#include <string>

namespace Vantor {

namespace {

const int kCandidates = 9;  // input0 to input8
const int64_t kNanosPerSecond = 1000000000;
// The longest single wait, about 68 years: its seconds still fit a 32-bit time_t, and
// a deadline this far ahead cannot overflow the monotonic clock's nanoseconds.
const double kLongestWaitSeconds = 2147483520.0;

std::string ReadWholeFile(const char* path, bool& opened) {
    std::ifstream file(path);
    opened = file.is_open();
    if (!opened) return std::string();
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// M for a directory entry named eventM, else -1. Nine digits at most, so M fits an int.
int EventNumberIn(const char* entryName) {
    const char prefix[] = "event";
    if (std::strncmp(entryName, prefix, sizeof(prefix) - 1) != 0) return -1;
    const char* digits = entryName + sizeof(prefix) - 1;
    const size_t count = std::strlen(digits);
    if (count == 0 || count > 9) return -1;
    int number = 0;
    for (const char* d = digits; *d != '\0'; ++d) {
        if (*d < '0' || *d > '9') return -1;
        number = number * 10 + (*d - '0');
    }
    return number;
}

// The kernel lists the evdev node it made for inputN as an eventM entry in inputN's
// directory. M equals N only until some device comes and goes, so it is looked up
// rather than assumed; -1 when there is no such entry.
int EventNumberOf(int input) {
    char dirPath[64];
    std::snprintf(dirPath, sizeof(dirPath), "/sys/class/input/input%1d", input);
    DIR* dir = opendir(dirPath);
    if (dir == nullptr) return -1;
    int number = -1;
    while (const dirent* entry = readdir(dir)) {
        number = EventNumberIn(entry->d_name);
        if (number >= 0) break;
    }
    closedir(dir);
    return number;
}

int64_t NowNanoseconds() {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t(now.tv_sec) * kNanosPerSecond + now.tv_nsec;
}

// The wait in whole nanoseconds, or -1 for a time-out that fails at once (negative or
// NaN). The comparisons come before any conversion, so +-inf and 1e30 convert nothing
// out of range: everything beyond the longest wait is that wait.
int64_t WaitNanoseconds(float timeout) {
    if (!(timeout >= 0.0f)) return -1;
    const double seconds = std::min(static_cast<double>(timeout), kLongestWaitSeconds);
    return static_cast<int64_t>(seconds * kNanosPerSecond);
}

// poll rather than select: a descriptor number above 1023 does not fit select's set.
// A signal does not stretch the wait: each retry gets only the time that is left.
int PollUntil(pollfd& watched, int64_t deadline) {
    for (;;) {
        const int64_t left = std::max<int64_t>(deadline - NowNanoseconds(), 0);
        timespec span;
        span.tv_sec = static_cast<time_t>(left / kNanosPerSecond);
        span.tv_nsec = static_cast<long>(left % kNanosPerSecond);
        const int ready = ppoll(&watched, 1, &span, nullptr);
        if (ready != -1 || errno != EINTR) return ready;
    }
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
        const int event = EventNumberOf(n);
        char eventPath[64];
        std::snprintf(eventPath, sizeof(eventPath), "/dev/input/event%1d", event >= 0 ? event : n);
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
    // Programs the host starts must not keep the node open (and its keys) behind our back.
    fcntl(opened, F_SETFD, FD_CLOEXEC);
    if (fd > 0) close(fd);
    fd = opened;
    return 0;
}

// Without an open device the wait still lasts the time-out, so a caller that loops on
// -1 idles instead of spinning.
int CKeypad::WaitKeyEvent(float timeout) {
    const int64_t wait = WaitNanoseconds(timeout);
    if (wait < 0) return -1;
    pollfd watched = {fd > 0 ? fd : -1, POLLIN, 0};
    if (PollUntil(watched, NowNanoseconds() + wait) != 1) return -1;
    // evdev answers a device that went away with POLLHUP | POLLERR, and every read then
    // fails: waiting on it again would return at once, for ever.
    if (watched.revents & (POLLERR | POLLHUP | POLLNVAL)) {
        DropDevice();
        return -1;
    }
    return ReadKeyRecord();
}

bool CKeypad::IsDeviceLost() const {
    return fd == kDeviceLost;
}

// One record per call; only a press (value 1) is a key, releases and repeats are not.
int CKeypad::ReadKeyRecord() {
    input_event event;
    const ssize_t got = read(fd, &event, sizeof(event));
    if (got == 0 || (got < 0 && (errno == ENODEV || errno == EIO))) {
        DropDevice();
        return -1;
    }
    if (got != static_cast<ssize_t>(sizeof(event))) return -1;
    if (event.type == EV_KEY && event.value == 1) return event.code;
    return -1;
}

void CKeypad::DropDevice() {
    close(fd);
    fd = kDeviceLost;
}

}  // namespace Vantor
