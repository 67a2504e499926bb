// SPDX-License-Identifier: MIT
// Choosing key devices and key codes through the C interface: several devices at once,
// any input number, buttons and keyboards, and devices that go away.
#include <fcntl.h>
#include <linux/input-event-codes.h>
#include <unistd.h>

#include <string>
#include <utility>

#include "InterfaceFixture.h"
#include "vantor/Context.h"
#include "vantor/Keypad.h"
#include "vantor_platform.h"

using Vantor::pContext;

namespace {

const char* kEntries[] = {"A", "B", "C", nullptr};

// The keypad at input0 and three gpio-keys buttons at input12, whose node is event3.
void AddKeypadAndButtons() {
    ASSERT_EQ(0, vp_input_add(0, "tca8418 keypad"));
    ASSERT_EQ(0, vp_input_add_numbered(12, 3, "gpio-keys"));
}

std::string Entries(int count, const std::string& entry) {
    std::string list;
    for (int k = 0; k < count; ++k) list += (k ? "," : "") + entry;
    return list;
}

}  // namespace

using KeyDevices = Interface;

// Too many or too long entries, codes and keys out of range, unknown sets: refused, and
// the last good choice holds. Beyond 16 devices, the rest are left closed.
TEST_F(KeyDevices, ChoicesBeyondTheLimitsAreRefusedAndChangeNothing) {
    const std::pair<std::string, int> lists[] = {{" gpio-keys , /dev/input/event3 ,", 0},
                                                 {",", -1},
                                                 {"", 0},
                                                 {Entries(16, "k"), 0},
                                                 {std::string(255, 'k'), 0},
                                                 {"gpio-keys", 0},
                                                 {Entries(17, "k"), -1},
                                                 {std::string(256, 'k'), -1}};
    for (const auto& [list, result] : lists) EXPECT_EQ(result, setKeyDevices(list.c_str())) << list;
    const int codes[][3] = {{0, VANTOR_KEY_OK, 0},   {767, VANTOR_KEY_HOME, 0}, {30, 0, 0},
                            {-1, VANTOR_KEY_OK, -1}, {768, VANTOR_KEY_OK, -1},  {30, 11, -1}};
    for (const auto& c : codes) EXPECT_EQ(c[2], setKeyCode(c[0], c[1])) << c[0] << " " << c[1];
    EXPECT_EQ(-1, resetKeyCodes(2));

    AddKeypad(0, "tca8418");
    for (int k = 0; k < 17; ++k) ASSERT_EQ(0, vp_input_add(30 + k, "gpio-keys"));
    ASSERT_EQ(0, InitKeypad());
    EXPECT_EQ(0, vp_input_open_count(0));
    for (int k = 0; k < 17; ++k) EXPECT_EQ(k < 16 ? 1 : 0, vp_input_open_count(30 + k)) << k;
}

// The default stays the keypad among input0 to input8; a chosen name is looked for at
// every input number, and each device it names is opened, close-on-exec, once.
TEST_F(KeyDevices, NamesMatchEveryInputNumberAndNodesAreOpenedAsTheyAre) {
    AddKeypad(9, "tca8418");
    ASSERT_EQ(0, vp_input_add_numbered(20, 4, "gpio-keys-polled"));
    ASSERT_EQ(0, vp_input_add_numbered(12, 3, "gpio-keys"));
    ASSERT_EQ(0, vp_input_add(5, "usb keyboard"));
    EXPECT_EQ(-19, InitKeypad());
    ASSERT_EQ(0, setKeyDevices("gpio-keys,/dev/input/event5,tca8418,/dev/input/event3"));
    ASSERT_EQ(0, InitKeypad());
    EXPECT_STREQ("/dev/input/event3", pContext->pKeypad->pDevicePath);  // input12 first
    for (int input : {9, 12, 20, 5}) EXPECT_EQ(1, vp_input_open_count(input)) << input;
    EXPECT_TRUE(fcntl(pContext->pKeypad->fd, F_GETFD) & FD_CLOEXEC);
    ASSERT_EQ(0, setKeyDevices("no-such-device,/dev/input/event7,/dev/input/"));
    EXPECT_EQ(-19, InitKeypad());
    for (int input : {9, 12, 20, 5}) EXPECT_EQ(0, vp_input_open_count(input)) << input;
}

// Keys of the common set from a button device, with the keypad's still working; with
// the default set the buttons give nothing. setKeyCode applies to the open keypad.
TEST_F(KeyDevices, CodeSetsAndSingleCodesApplyToTheNextRecord) {
    AddKeypadAndButtons();
    ASSERT_EQ(0, setKeyDevices("gpio-keys"));
    ASSERT_EQ(0, InitKeypad());
    const int keys[][2] = {{KEY_VOLUMEUP, VANTOR_KEY_UP}, {KEY_RIGHT, VANTOR_KEY_DOWN},
                           {KEY_POWER, VANTOR_KEY_OK},    {KEY_ESC, VANTOR_KEY_CANCEL},
                           {KEY_PROG2, VANTOR_KEY_OK},    {KEY_A, -1}};
    for (int set : {VANTOR_KEYCODES_TCA8418, VANTOR_KEYCODES_COMMON}) {
        ASSERT_EQ(0, resetKeyCodes(set));
        for (const auto& [code, key] : keys) {
            Press(code, 12);
            const int expected = set == VANTOR_KEYCODES_COMMON || code == KEY_PROG2 ? key : -1;
            EXPECT_EQ(expected, WaitKey(0.0f)) << set << " " << code;
        }
    }
    ASSERT_EQ(0, setKeyCode(KEY_A, VANTOR_KEY_HOME));
    ASSERT_EQ(0, setKeyCode(KEY_POWER, 0));
    const int changed[][2] = {{KEY_A, VANTOR_KEY_HOME}, {KEY_POWER, -1}};
    for (const auto& [code, key] : changed) {
        Press(code, 12);
        EXPECT_EQ(key, WaitKey(0.0f)) << code;
    }
}

// With both devices full of presses, the answers take turns: neither starves the other.
TEST_F(KeyDevices, TwoDevicesAnswerInTurnAndALossIsNoAnswer) {
    AddKeypadAndButtons();
    ASSERT_EQ(0, setKeyDevices("tca8418,gpio-keys"));
    ASSERT_EQ(0, resetKeyCodes(VANTOR_KEYCODES_COMMON));
    ASSERT_EQ(0, InitKeypad());
    for (int k = 0; k < 3; ++k) {
        Press(KEY_5, 0);
        Press(KEY_VOLUMEDOWN, 12);
    }
    int up = 0, down = 0;
    for (int k = 0; k < 4; ++k) {
        const int key = WaitKey(0.0f);
        up += key == VANTOR_KEY_UP;
        down += key == VANTOR_KEY_DOWN;
    }
    EXPECT_EQ(2, up);
    EXPECT_EQ(2, down);
    EXPECT_EQ(VANTOR_KEY_UP + VANTOR_KEY_DOWN, WaitKey(0.0f) + WaitKey(0.0f));  // the last ones

    // A device gone is no answer while another is left: the key waiting beside it is.
    ASSERT_EQ(0, setKeyDevices("gpio-keys,tca8418"));
    ASSERT_EQ(0, InitKeypad());
    vp_input_remove(12);
    Press(KEY_6, 0);
    EXPECT_EQ(VANTOR_KEY_DOWN, WaitKey(0.0f));
}

// A menu driven from both devices; one of them goes away in the middle and the menu
// goes on with the other. Only the loss of the last one ends it with -2.
TEST_F(KeyDevices, MenuGoesOnWhenOneDeviceIsUnplugged) {
    alarm(60);  // the fault this looks for is a wait without end: fail, don't hang
    InitFramebuffer("/dev/fb0");
    InitMenu(10, 10);
    AddKeypadAndButtons();
    ASSERT_EQ(0, setKeyDevices("tca8418,gpio-keys"));
    ASSERT_EQ(0, resetKeyCodes(VANTOR_KEYCODES_COMMON));
    ASSERT_EQ(0, InitKeypad());
    static int waits;
    waits = 0;
    vp_set_wait_hook(
        [](int index, void*) {
            if (index == 12 && ++waits == 2) vp_input_remove(12);
        },
        nullptr);
    Script("115, 115", 12);  // volume up twice: to the last entry, then the second
    Script("6, 6, 50", 0);   // up from the second wraps to the third
    EXPECT_EQ(1, ShowMenu(kEntries, eMenuVertical, eAlignLeft));
    EXPECT_EQ(1, vp_input_open_count(0));

    vp_set_wait_hook(nullptr, nullptr);
    Script("7", 0);
    ASSERT_EQ(0, InitMenu(10, 10));
    waits = 0;
    vp_set_wait_hook([](int, void*) { ++waits == 2 && vp_input_remove(0); }, nullptr);
    EXPECT_EQ(-2, ShowMenu(kEntries, eMenuVertical, eAlignLeft));
    EXPECT_EQ(-1, WaitKey(0.0f));
    alarm(0);
}
