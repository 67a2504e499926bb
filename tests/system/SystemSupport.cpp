#include "SystemSupport.h"

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <memory>

const char* TheFramebuffer() {
    const char* device = std::getenv("VANTOR_SYSTEM_FB");
    return device != nullptr && *device != 0 ? device : "/dev/fb0";
}

double SecondsOf(const std::function<void()>& call) {
    const auto start = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

namespace {

// Devices that came and went before: input numbers are never reused within a boot but
// event numbers are, so the keypad's event node no longer has its input number.
struct Departed {
    Departed() {
        for (int n = 0; n < 2; ++n) UinputDevice("departed");
    }
};

// Made in this order, after the departed ones. The second name contains the
// controller's but does not begin with it.
struct Devices {
    Departed departed;
    UinputDevice gpio{"gpio-keys"};
    UinputDevice misnamed{"keypad-tca8418"};
    UinputDevice keypad{"tca8418-keypad"};
};

}  // namespace

UinputDevice& TheKeypad() {
    static Devices devices;
    return devices.keypad;
}

void PressAll(std::initializer_list<int> codes) {
    for (int code : codes) TheKeypad().Press(code);
}

std::vector<uint32_t> ReadScreen(const char* device, size_t words) {
    std::vector<uint32_t> screen(words);
    const int fd = open(device, O_RDONLY);
    const ssize_t got = fd < 0 ? -1 : read(fd, screen.data(), words * 4);
    if (fd >= 0) close(fd);
    if (got != ssize_t(words * 4)) screen.clear();
    return screen;
}
