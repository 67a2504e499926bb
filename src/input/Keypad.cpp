// SPDX-License-Identifier: MIT
#include "vantor/Keypad.h"

#include <fcntl.h>
#include <linux/input.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>

#include "InputDirectory.h"
#include "KeyWait.h"
#include "io/UniqueFd.h"

namespace Vantor {

namespace {

const int kCandidates = 9;  // input0 to input8

// Closes what the public field holds: only a number above 0 counts as an open device
// there, -1 and kDeviceLost hold nothing.
void CloseHeld(int& fd) {
    UniqueFd held(fd > 0 ? fd : -1);
    fd = -1;
}

}  // namespace

CKeypad::CKeypad() : pDevicePath(nullptr), fd(-1) {}

CKeypad::~CKeypad() {
    CloseHeld(fd);
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
    for (int n = 0; n < kCandidates; ++n) {
        if (!InputDirectory::NameStartsWith(n, name)) continue;
        const std::string eventPath = InputDirectory::EventNodeOf(n);
        char* path = new char[eventPath.size() + 1];
        std::strcpy(path, eventPath.c_str());
        delete[] pDevicePath;
        pDevicePath = path;
        return 0;
    }
    return -2;
}

int CKeypad::OpenDevice() {
    if (pDevicePath == nullptr) return -2;
    // Programs the host starts must not keep the node open (and its keys) behind our
    // back, hence close-on-exec. Descriptor 0 does not count as a device; it is closed
    // again, not leaked.
    UniqueFd opened = UniqueFd::Open(pDevicePath, O_RDONLY);
    if (opened.Get() <= 0) return -2;
    CloseHeld(fd);
    fd = opened.Release();
    return 0;
}

// Without an open device the wait still lasts the time-out, so a caller that loops on
// -1 idles instead of spinning.
int CKeypad::WaitKeyEvent(float timeout) {
    const int64_t wait = KeyWait::WaitNanoseconds(timeout);
    if (wait < 0) return -1;
    pollfd watched = {fd > 0 ? fd : -1, POLLIN, 0};
    if (KeyWait::PollUntil(&watched, 1, KeyWait::NowNanoseconds() + wait) != 1) return -1;
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
    CloseHeld(fd);
    fd = kDeviceLost;
}

}  // namespace Vantor
