// SPDX-License-Identifier: MIT
#include "KeypadGroup.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <utility>

#include "InputDirectory.h"
#include "KeyTable.h"
#include "KeyWait.h"
#include "io/UniqueFd.h"

namespace Vantor {

namespace {

const char kNodePrefix[] = "/dev/input/";

// A directory named as a node (/dev/input/by-id) opens, and then polls as always
// readable while every read fails: a menu waiting on it would never sleep.
bool IsDirectory(int fd) {
    struct stat status;
    return fstat(fd, &status) == 0 && S_ISDIR(status.st_mode);
}

char* CopyOf(const std::string& text) {
    char* copy = new char[text.size() + 1];
    std::strcpy(copy, text.c_str());
    return copy;
}

}  // namespace

CKeypadGroup::CKeypadGroup(const std::vector<std::string>& entries, const CKeyTable& keyTable)
    : keys(keyTable) {
    devices.reserve(kMaxDevices);
    Find(entries);
    watched.assign(devices.size(), pollfd{-1, POLLIN, 0});
    if (!devices.empty()) pDevicePath = CopyOf(devices.front()->pDevicePath);
}

// The devices close their own descriptors; ours is only one of theirs.
CKeypadGroup::~CKeypadGroup() {
    devices.clear();
    fd = -1;
}

// Entries are taken in list order and the inputs of a name in increasing order; a node
// that two entries find is opened once.
void CKeypadGroup::Find(const std::vector<std::string>& entries) {
    if (entries.empty()) {
        std::unique_ptr<CKeypad> device(new CKeypad());
        if (device->FindDevice("tca8418") == 0) devices.push_back(std::move(device));
        return;
    }
    const std::vector<int> inputs = InputDirectory::Inputs();
    for (const std::string& entry : entries) {
        if (entry.compare(0, sizeof(kNodePrefix) - 1, kNodePrefix) == 0) {
            Add(entry);
            continue;
        }
        for (int input : inputs) {
            if (InputDirectory::NameStartsWith(input, entry.c_str()))
                Add(InputDirectory::EventNodeOf(input));
        }
    }
}

void CKeypadGroup::Add(const std::string& path) {
    if (devices.size() == kMaxDevices) return;
    for (const auto& device : devices) {
        if (path == device->pDevicePath) return;
    }
    std::unique_ptr<CKeypad> device(new CKeypad());
    device->pDevicePath = CopyOf(path);
    devices.push_back(std::move(device));
}

int CKeypadGroup::OpenDevice() {
    for (size_t k = 0; k < devices.size(); ++k) {
        CKeypad& device = *devices[k];
        if (device.fd <= 0 && device.OpenDevice() == 0 && IsDirectory(device.fd)) {
            const UniqueFd refused(std::exchange(device.fd, -1));
        }
        if (device.fd > 0) opened = true;
        watched[k].fd = device.fd > 0 ? device.fd : -1;
    }
    UpdateDescriptor();
    return fd > 0 ? 0 : -2;
}

// One poll for all devices. The look for a ready one starts after the device that
// answered last, so a device that always has records cannot starve the others. A device
// found gone is closed and the wait goes on with the others until the deadline: only
// the loss of the last one ends it early.
int CKeypadGroup::WaitKeyEvent(float timeout) {
    const int64_t wait = KeyWait::WaitNanoseconds(timeout);
    if (wait < 0) return -1;
    const int64_t deadline = KeyWait::NowNanoseconds() + wait;
    for (;;) {
        if (KeyWait::PollUntil(watched.data(), watched.size(), deadline) <= 0) return -1;
        const size_t ready = NextReady();
        if (ready == watched.size()) return -1;
        // The device reads its one record (or finds itself gone) without waiting.
        CKeypad& device = *devices[ready];
        const int code = device.WaitKeyEvent(0.0f);
        if (device.fd > 0) return keys.Translate(code);
        watched[ready].fd = -1;
        UpdateDescriptor();
        if (fd <= 0) return -1;
    }
}

// The first ready device from where the last look stopped; the count when none is.
size_t CKeypadGroup::NextReady() {
    for (size_t k = 0; k < watched.size(); ++k) {
        const size_t device = (next + k) % watched.size();
        if (watched[device].fd < 0 || watched[device].revents == 0) continue;
        next = device + 1;
        return device;
    }
    return watched.size();
}

void CKeypadGroup::UpdateDescriptor() {
    for (const pollfd& device : watched) {
        if (device.fd > 0) {
            fd = device.fd;
            return;
        }
    }
    fd = opened ? kDeviceLost : -1;
}

}  // namespace Vantor
