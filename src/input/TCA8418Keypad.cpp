#include "vantor/TCA8418Keypad.h"

namespace Vantor {

CTCA8418Keypad::CTCA8418Keypad() {
    // A missing device only leaves the path empty; the owner decides what that means.
    FindDevice("tca8418");
    keyTable.insert({152, 9});   // KEY_COFFEE: leave with -4
    keyTable.insert({150, 26});  // KEY_WWW: leave with 0
    keyTable.insert({149, 10});  // KEY_PROG2: choose
    keyTable.insert({50, 103});  // KEY_M: choose
    keyTable.insert({6, 108});   // KEY_5: previous entry
    keyTable.insert({7, 114});   // KEY_6: next entry
    keyTable.insert({53, 3});    // KEY_SLASH: leave with -3
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
