#ifndef VANTOR_TESTS_UINPUTDEVICE_H
#define VANTOR_TESTS_UINPUTDEVICE_H

#include <string>

// A real input device made through the kernel's uinput: it appears under
// /sys/class/input with the given name and an evdev node, as a driver's device would.
class UinputDevice {
  public:
    explicit UinputDevice(const std::string& name);
    ~UinputDevice();
    UinputDevice(const UinputDevice&) = delete;
    UinputDevice& operator=(const UinputDevice&) = delete;

    bool Ready() const { return fd >= 0; }
    // What the TCA8418 driver sends for a key: for the press and for the release, the
    // scan code, the key record and a report.
    void Press(int code);
    // The evdev node the kernel gave the device, e.g. "/dev/input/event1".
    std::string EventNode() const;

  private:
    void Emit(int type, int code, int value);
    void Key(int code, int value);
    int fd = -1;
    std::string name;
};

#endif
