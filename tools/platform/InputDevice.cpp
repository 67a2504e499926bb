// SPDX-License-Identifier: MIT
#include "InputDevice.h"

#include <fcntl.h>
#include <linux/input.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "KeyRecords.h"
#include "RealCalls.h"

namespace VantorPlatform {

namespace {

bool ParseCodes(const char* text, std::deque<int>& codes) {
    for (const char* p = text; *p != '\0';) {
        if (std::isspace(static_cast<unsigned char>(*p)) || *p == ',') {
            ++p;
            continue;
        }
        char* end = nullptr;
        const long code = std::strtol(p, &end, 10);
        if (end == p || code < 0 || code > 0xFFFF) return false;
        codes.push_back(int(code));
        p = end;
    }
    return true;
}

}  // namespace

InputDevice::~InputDevice() {
    // A program still reading the node sees end of file, like an unplugged device.
    if (writer >= 0) RealCalls::Close(writer);
    if (!node.empty()) unlink(node.c_str());
}

bool InputDevice::MakeNode(const std::string& realPath, bool shared) {
    if (!shared) {
        unlink(realPath.c_str());
        if (mkfifo(realPath.c_str(), 0644) != 0) return false;
        node = realPath;
    } else if (mkfifo(realPath.c_str(), 0644) != 0 && errno != EEXIST) {
        return false;
    }
    // Non-blocking: a full FIFO refuses a record instead of hanging the test.
    writer = RealCalls::Open(realPath.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC, 0);
    // A program started with a standard stream closed must find it still closed: the
    // layer's own descriptor may not take its number.
    if (writer >= 0 && writer <= STDERR_FILENO) {
        const int moved = fcntl(writer, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        close(writer);
        writer = moved;
    }
    return writer >= 0;
}

int InputDevice::Queue(int type, int code, int value) {
    if (writer < 0 || type < 0 || type > 0xFFFF || code < 0 || code > 0xFFFF) return -1;
    input_event event;
    std::memset(&event, 0, sizeof(event));
    timeval now;
    gettimeofday(&now, nullptr);
    event.input_event_sec = now.tv_sec;
    event.input_event_usec = now.tv_usec;
    event.type = static_cast<__u16>(type);
    event.code = static_cast<__u16>(code);
    event.value = value;
    return write(writer, &event, sizeof(event)) == ssize_t(sizeof(event)) ? 0 : -1;
}

// Written at once, so a reader never finds a key change cut in two.
int InputDevice::QueueKey(int code, int value) {
    if (writer < 0 || code < 0 || code > 0xFFFF) return -1;
    const KeyRecords key = MakeKeyRecords(code, value);
    return write(writer, &key, sizeof(key)) == ssize_t(sizeof(key)) ? 0 : -1;
}

int InputDevice::QueuePress(int code) {
    if (QueueKey(code, 1) != 0) return -1;
    return QueueKey(code, 0);
}

bool InputDevice::IsEmpty() const {
    int queued = 0;
    return writer >= 0 && RealCalls::Ioctl(writer, FIONREAD, &queued) == 0 && queued == 0;
}

bool InputDevice::SetScript(const char* codes) {
    std::deque<int> parsed;
    if (codes != nullptr && !ParseCodes(codes, parsed)) return false;
    script.swap(parsed);
    scripted = codes != nullptr;
    return true;
}

bool InputDevice::NextScripted(int& code) {
    if (script.empty()) return false;
    code = script.front();
    script.pop_front();
    return true;
}

}  // namespace VantorPlatform
