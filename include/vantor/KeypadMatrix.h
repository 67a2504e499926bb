// SPDX-License-Identifier: MIT
#ifndef VANTOR_KEYPADMATRIX_H
#define VANTOR_KEYPADMATRIX_H

#include <linux/input-event-codes.h>

namespace Vantor {

// The Linux key codes the target device's keypad matrix sends, named after the key code
// (VANTOR_KEY_*) each one gives by default. The library's default key table, the
// simulator and the tests all press the keypad by these names.
namespace KeypadMatrix {
constexpr int kUp = KEY_5;
constexpr int kDown = KEY_6;
constexpr int kOk = KEY_PROG2;
constexpr int kSelect = KEY_M;
constexpr int kBack = KEY_WWW;
constexpr int kHome = KEY_COFFEE;
constexpr int kCancel = KEY_SLASH;
}  // namespace KeypadMatrix

}  // namespace Vantor

#endif
