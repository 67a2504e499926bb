// SPDX-License-Identifier: MIT
#ifndef VANTOR_KEYSETTINGS_H
#define VANTOR_KEYSETTINGS_H

#include <string>
#include <vector>

namespace Vantor {

class CKeypad;
class CKeyTable;

// The host's choice of key devices and key codes. It belongs to the process, not to the
// state record: a host may choose before InitFramebuffer or InitKeypad, and the choice
// outlives the keypad that InitKeypad makes from it.
class CKeySettings {
  public:
    static const size_t kMaxEntries = 16;
    static const size_t kMaxEntryLength = 255;

    // Empty: the keypad of the target device, found as it always was.
    static std::vector<std::string>& Devices();
    // Keypads refer to it, so a change applies to the next record they read.
    static CKeyTable& Codes();

    // Replaces the keypad in slot (destroying the old one first) by one for the chosen
    // devices and opens them: 0 when at least one is open, else -19.
    static int OpenKeypad(CKeypad*& slot);
};

}  // namespace Vantor

#endif
