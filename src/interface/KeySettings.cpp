// SPDX-License-Identifier: MIT
#include "KeySettings.h"

#include "../input/KeyTable.h"
#include "../input/KeypadGroup.h"

namespace Vantor {

std::vector<std::string>& CKeySettings::Devices() {
    // A plain static, freed when the library is unloaded: a keypad copies the list when
    // it opens its devices, so nothing reads it while the unload hook takes keypads away,
    // and a host that loads and unloads the library leaks nothing.
    static std::vector<std::string> devices;
    return devices;
}

CKeyTable& CKeySettings::Codes() {
    static CKeyTable table;
    return table;
}

int CKeySettings::OpenKeypad(CKeypad*& slot) {
    delete slot;
    slot = nullptr;
    slot = new CKeypadGroup(Devices(), Codes());
    return slot->OpenDevice() == 0 ? 0 : -19;
}

}  // namespace Vantor
