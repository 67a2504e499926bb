// SPDX-License-Identifier: MIT
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
    // Waits at most timeout seconds (0 looks once, below 0 or NaN fails at once) for
    // one record; returns its code if it is a key press, else -1. A device that
    // reports an error or hang-up is closed, and the keypad counts as having lost it.
    virtual int WaitKeyEvent(float timeout);
    // True once the open device went away during a wait, until OpenDevice succeeds
    // again; a keypad that never had a device has lost nothing. Appended after the
    // older slots so that they keep their places in the table of virtual functions.
    virtual bool IsDeviceLost() const;

    char* pDevicePath;
    // The open event node; -1 when none is open, kDeviceLost when it went away.
    int fd;

    // Kept in fd rather than in a field of its own, so that the object's size and the
    // places of the fields of derived classes stay as they were.
    static constexpr int kDeviceLost = -2;

  private:
    int ReadKeyRecord();
    void DropDevice();
};

}  // namespace Vantor

#endif
