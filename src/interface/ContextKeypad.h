// SPDX-License-Identifier: MIT
#ifndef VANTOR_CONTEXTKEYPAD_H
#define VANTOR_CONTEXTKEYPAD_H

#include "vantor/Keypad.h"

namespace Vantor {

// The key source that the C interface hands to its menus and dialogs. It reads from
// whatever keypad the state record holds at the moment of the wait, so a later
// InitKeypad never leaves a widget holding a keypad that has been destroyed.
class CContextKeypad : public CKeypad {
  public:
    int WaitKeyEvent(float timeout) override;
    bool IsDeviceLost() const override;

    // A usable keypad is one whose device is open; without it a query would wait forever.
    static bool IsUsable();
};

}  // namespace Vantor

#endif
