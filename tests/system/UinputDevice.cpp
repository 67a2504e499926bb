// SPDX-License-Identifier: MIT
#include "UinputDevice.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/uinput.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

#include "vantor/KeypadMatrix.h"

namespace {

using namespace Vantor::KeypadMatrix;

// The keypad's seven keys.
const int kKeys[] = {kUp, kDown, kSelect, kCancel, kOk, kBack, kHome};
const int kButtonKeys[] = {KEY_VOLUMEUP, KEY_VOLUMEDOWN, KEY_POWER};

}  // namespace

UinputDevice::UinputDevice(const std::string& deviceName, Kind deviceKind)
    : name(deviceName), kind(deviceKind) {
    fd = open("/dev/uinput", O_WRONLY | O_NONBLOCK);
    if (fd < 0) return;
    ioctl(fd, UI_SET_EVBIT, EV_KEY);
    ioctl(fd, UI_SET_EVBIT, EV_SYN);
    if (kind == kButtons) {
        for (int key : kButtonKeys) ioctl(fd, UI_SET_KEYBIT, key);
    } else {
        ioctl(fd, UI_SET_EVBIT, EV_MSC);
        ioctl(fd, UI_SET_MSCBIT, MSC_SCAN);
        for (int key : kKeys) ioctl(fd, UI_SET_KEYBIT, key);
    }
    uinput_setup setup;
    std::memset(&setup, 0, sizeof(setup));
    setup.id.bustype = kind == kButtons ? BUS_HOST : BUS_I2C;
    if (kind == kKeypad) {
        setup.id.vendor = 0x0451;  // the controller's maker
        setup.id.product = 0x8418;
    }
    std::strncpy(setup.name, name.c_str(), UINPUT_MAX_NAME_SIZE - 1);
    if (ioctl(fd, UI_DEV_SETUP, &setup) != 0 || ioctl(fd, UI_DEV_CREATE) != 0) {
        close(fd);
        fd = -1;
        return;
    }
    usleep(200000);  // let the kernel publish the device and its node
}

UinputDevice::~UinputDevice() {
    if (fd < 0) return;
    ioctl(fd, UI_DEV_DESTROY);
    close(fd);
}

void UinputDevice::Emit(int type, int code, int value) {
    input_event event;
    std::memset(&event, 0, sizeof(event));
    event.type = static_cast<__u16>(type);
    event.code = static_cast<__u16>(code);
    event.value = value;
    (void)!write(fd, &event, sizeof(event));
}

// The driver's scan code is the key's place in the matrix; here, its place in kKeys.
void UinputDevice::Key(int code, int value) {
    if (kind == kKeypad) {
        const int* place = std::find(std::begin(kKeys), std::end(kKeys), code);
        Emit(EV_MSC, MSC_SCAN, int(place - std::begin(kKeys)));
    }
    Emit(EV_KEY, code, value);
    Emit(EV_SYN, SYN_REPORT, 0);
}

void UinputDevice::Press(int code) {
    Key(code, 1);
    Key(code, 0);
}

std::string UinputDevice::EventNode() const {
    for (int n = 0; n < 32; ++n) {
        std::ifstream file("/sys/class/input/input" + std::to_string(n) + "/name");
        std::string line;
        if (!std::getline(file, line) || line != name) continue;
        const std::string dir = "/sys/class/input/input" + std::to_string(n);
        DIR* entries = opendir(dir.c_str());
        std::string node;
        while (dirent* entry = entries ? readdir(entries) : nullptr) {
            if (std::strncmp(entry->d_name, "event", 5) == 0)
                node = "/dev/input/" + std::string(entry->d_name);
        }
        if (entries) closedir(entries);
        return node;
    }
    return "";
}
