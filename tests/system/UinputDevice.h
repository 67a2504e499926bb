// SPDX-License-Identifier: MIT
#ifndef VANTOR_TESTS_UINPUTDEVICE_H
#define VANTOR_TESTS_UINPUTDEVICE_H

#include <string>

// A real input device made through the kernel's uinput: it appears under
// /sys/class/input with the given name and an evdev node, as a driver's device would.
class UinputDevice {
  public:
    // A TCA8418 keypad's seven keys, or the volume and power buttons of gpio-keys.
    enum Kind { kKeypad, kButtons };

    explicit UinputDevice(const std::string& name, Kind kind = kKeypad);
    ~UinputDevice();
    UinputDevice(const UinputDevice&) = delete;
    UinputDevice& operator=(const UinputDevice&) = delete;

    bool Ready() const { return fd >= 0; }
    // What the driver sends for a key: for the press and for the release, the key
    // record and a report, after the scan code from a TCA8418 keypad.
    void Press(int code);
    // The evdev node the kernel gave the device, e.g. "/dev/input/event1".
    std::string EventNode() const;

  private:
    void Emit(int type, int code, int value);
    void Key(int code, int value);
    int fd = -1;
    std::string name;
    Kind kind;
};

#endif
