#ifndef VANTOR_KEYPAD_H
#define VANTOR_KEYPAD_H

#include "vantor/Export.h"

namespace Vantor {

// A Linux input-event device found by the name the kernel publishes for it. It hands
// on the device's own key codes, one key press per wait.
class VANTOR_API CKeypad {
  public:
    CKeypad();
    virtual ~CKeypad();
    CKeypad(const CKeypad&) = delete;
    CKeypad& operator=(const CKeypad&) = delete;

    virtual int getKey();
    // Looks at input0 to input8 for a device whose name begins with the given text.
    virtual int FindDevice(const char* name);
    virtual int OpenDevice();
    // Waits at most timeout seconds (0 looks once, below 0 fails at once) for one
    // record; returns its code if it is a key press, else -1.
    virtual int WaitKeyEvent(float timeout);

    char* pDevicePath;
    int fd;
};

}  // namespace Vantor

#endif
