// SPDX-License-Identifier: MIT
// setKeyCode and resetKeyCodes: which library key each Linux key code gives.
#include "../input/KeyTable.h"
#include "Boundary.h"
#include "KeySettings.h"
#include "vantor.h"

using Vantor::CKeySettings;

int setKeyCode(int code, int key) {
    return Vantor::Guarded("setKeyCode", -1,
                           [&] { return CKeySettings::Codes().Set(code, key) ? 0 : -1; });
}

int resetKeyCodes(int set) {
    return Vantor::Guarded("resetKeyCodes", -1,
                           [&] { return CKeySettings::Codes().Reset(set) ? 0 : -1; });
}
