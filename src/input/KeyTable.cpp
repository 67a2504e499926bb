// SPDX-License-Identifier: MIT
#include "KeyTable.h"

#include <linux/input-event-codes.h>

#include <cstring>
#include <iterator>

#include "vantor.h"

namespace Vantor {

namespace {

// The keypad matrix of the target device.
const int kTCA8418[][2] = {
    {KEY_COFFEE, VANTOR_KEY_HOME},  {KEY_WWW, VANTOR_KEY_BACK}, {KEY_PROG2, VANTOR_KEY_OK},
    {KEY_M, VANTOR_KEY_SELECT},     {KEY_5, VANTOR_KEY_UP},     {KEY_6, VANTOR_KEY_DOWN},
    {KEY_SLASH, VANTOR_KEY_CANCEL},
};

// What boards without that keypad have: gpio-keys and adc-keys buttons (volume and
// power), cursor keys, and a keyboard plugged in for service.
const int kCommon[][2] = {
    {KEY_UP, VANTOR_KEY_UP},          {KEY_LEFT, VANTOR_KEY_UP},
    {KEY_VOLUMEUP, VANTOR_KEY_UP},    {KEY_DOWN, VANTOR_KEY_DOWN},
    {KEY_RIGHT, VANTOR_KEY_DOWN},     {KEY_VOLUMEDOWN, VANTOR_KEY_DOWN},
    {KEY_ENTER, VANTOR_KEY_OK},       {KEY_KPENTER, VANTOR_KEY_OK},
    {KEY_POWER, VANTOR_KEY_OK},       {KEY_SPACE, VANTOR_KEY_SELECT},
    {KEY_BACKSPACE, VANTOR_KEY_BACK}, {KEY_ESC, VANTOR_KEY_CANCEL},
    {KEY_HOME, VANTOR_KEY_HOME},
};

static_assert(CKeyTable::kCodes == KEY_MAX + 1, "one entry for every Linux key code");

bool IsLibraryKey(int key) {
    switch (key) {
        case VANTOR_KEY_UP:
        case VANTOR_KEY_DOWN:
        case VANTOR_KEY_OK:
        case VANTOR_KEY_SELECT:
        case VANTOR_KEY_BACK:
        case VANTOR_KEY_CANCEL:
        case VANTOR_KEY_HOME:
            return true;
        default:
            return false;
    }
}

}  // namespace

CKeyTable::CKeyTable() {
    Reset(kSetTCA8418);
}

bool CKeyTable::Reset(int set) {
    if (set != kSetTCA8418 && set != kSetCommon) return false;
    std::memset(keys, 0, sizeof(keys));
    Fill(kTCA8418, std::size(kTCA8418));
    if (set == kSetCommon) Fill(kCommon, std::size(kCommon));
    return true;
}

bool CKeyTable::Set(int code, int key) {
    if (code < 0 || code >= kCodes) return false;
    if (key != 0 && !IsLibraryKey(key)) return false;
    keys[code] = static_cast<unsigned char>(key);
    return true;
}

// Code 0 (KEY_RESERVED) and codes beyond the table are no key, like any code that
// gives none: callers already wait again on -1.
int CKeyTable::Translate(int code) const {
    if (code <= 0 || code >= kCodes || keys[code] == 0) return -1;
    return keys[code];
}

void CKeyTable::Fill(const int (*pairs)[2], int count) {
    for (int k = 0; k < count; ++k) keys[pairs[k][0]] = static_cast<unsigned char>(pairs[k][1]);
}

}  // namespace Vantor
