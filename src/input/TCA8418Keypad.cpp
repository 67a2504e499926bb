// SPDX-License-Identifier: MIT
#include "vantor/TCA8418Keypad.h"

#include "KeyTable.h"

namespace Vantor {

CTCA8418Keypad::CTCA8418Keypad() {
    // A missing device only leaves the path empty; the owner decides what that means.
    FindDevice("tca8418");
    // The keypad's keys as the default key table gives them.
    const CKeyTable matrix;
    for (int code = 1; code < CKeyTable::kCodes; ++code) {
        const int key = matrix.Translate(code);
        if (key != -1) keyTable.insert({code, key});
    }
}

CTCA8418Keypad::~CTCA8418Keypad() {
    keyTable.clear();
}

// A key that is not on the keypad's matrix gives -1 like no key at all: callers
// already wait again on -1, and the table must not grow from what a device sends.
int CTCA8418Keypad::WaitKeyEvent(float timeout) {
    const int code = CKeypad::WaitKeyEvent(timeout);
    if (code <= 0) return -1;
    const auto entry = keyTable.find(code);
    return entry == keyTable.end() ? -1 : entry->second;
}

}  // namespace Vantor
