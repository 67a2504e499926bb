// SPDX-License-Identifier: MIT
#ifndef VANTOR_TCA8418KEYPAD_H
#define VANTOR_TCA8418KEYPAD_H

#include <map>

#include "vantor/Export.h"
#include "vantor/Keypad.h"

namespace Vantor {

// The key matrix of the target device, scanned by a TCA8418 controller. Its seven
// keys are translated into the library key codes that menus and dialogs act on.
class VANTOR_API CTCA8418Keypad : public CKeypad {
  public:
    CTCA8418Keypad();
    ~CTCA8418Keypad() override;

    int WaitKeyEvent(float timeout) override;

    std::map<int, int> keyTable;
};

}  // namespace Vantor

#endif
