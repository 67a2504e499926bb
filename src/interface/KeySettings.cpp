// SPDX-License-Identifier: MIT
#include "KeySettings.h"

#include "../input/KeyTable.h"
#include "../input/KeypadGroup.h"

namespace Vantor {

std::vector<std::string>& CKeySettings::Devices() {
    // Never destroyed: the unload hook may still make or use keypads after static
    // destructors ran.
    static std::vector<std::string>* devices = new std::vector<std::string>();
    return *devices;
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
