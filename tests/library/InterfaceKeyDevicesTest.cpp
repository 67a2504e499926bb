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

std::string Entries(int count, const std::string& entry) {
    std::string list;
    for (int k = 0; k < count; ++k) list += (k ? "," : "") + entry;
    return list;
}

}  // namespace

class KeyDevices : public Interface {
  protected:
    void SetUp() override {
        Interface::SetUp();
        setKeyDevices(nullptr);
        resetKeyCodes(VANTOR_KEYCODES_TCA8418);
    }
    void TearDown() override {
        setKeyDevices(nullptr);
        resetKeyCodes(VANTOR_KEYCODES_TCA8418);
        Interface::TearDown();
    }
    // The keypad at input0 and three gpio-keys buttons at input12, whose node is event3.
    void AddKeypadAndButtons() {
        AddKeypad();
        ASSERT_EQ(0, vp_input_add_numbered(12, 3, "gpio-keys"));
    }
};

TEST_F(KeyDevices, ListsAndCodesAreCheckedAndABadOneChangesNothing) {
    const std::pair<const char*, int> lists[] = {
        {"gpio-keys", 0},
        {" tca8418 , /dev/input/event3 ,", 0},  // blanks and an empty entry are dropped
        {",", -1},
        {"", 0},
    };
    for (const auto& [list, result] : lists) EXPECT_EQ(result, setKeyDevices(list)) << list;
    EXPECT_EQ(0, setKeyDevices(Entries(16, "k").c_str()));
    EXPECT_EQ(0, setKeyDevices(std::string(255, 'k').c_str()));
    EXPECT_EQ(0, setKeyDevices("keypad"));
    EXPECT_EQ(-1, setKeyDevices(Entries(17, "k").c_str()));
    EXPECT_EQ(-1, setKeyDevices(std::string(256, 'k').c_str()));

    const struct {
        int code, key, result;
    } codes[] = {{0, VANTOR_KEY_OK, 0},
                 {767, VANTOR_KEY_HOME, 0},
                 {30, 0, 0},
                 {-1, VANTOR_KEY_OK, -1},
                 {768, VANTOR_KEY_OK, -1},
                 {30, 11, -1},
                 {30, -1, -1}};
    for (const auto& c : codes) EXPECT_EQ(c.result, setKeyCode(c.code, c.key)) << c.code;
    EXPECT_EQ(-1, resetKeyCodes(2));
    EXPECT_EQ(-1, resetKeyCodes(-1));

    // The refused lists changed nothing: "keypad" still holds.
    AddKeypad(0, "keypad");
    AddKeypad(1, "tca8418");
    EXPECT_EQ(0, InitKeypad());
    EXPECT_STREQ("/dev/input/event0", pContext->pKeypad->pDevicePath);
    EXPECT_EQ(0, vp_input_open_count(1));
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

TEST_F(KeyDevices, AtMostSixteenDevicesAreOpened) {
    for (int k = 0; k < 17; ++k) ASSERT_EQ(0, vp_input_add(30 + k, "gpio-keys"));
    ASSERT_EQ(0, setKeyDevices("gpio-keys"));
    ASSERT_EQ(0, InitKeypad());
    for (int k = 0; k < 17; ++k) EXPECT_EQ(k < 16 ? 1 : 0, vp_input_open_count(30 + k)) << k;
}

// Every key of the common set, from a button device, while the keypad's keys still
// work; with the default set the buttons give nothing. setKeyCode applies to the keypad
// already open.
TEST_F(KeyDevices, CodeSetsAndSingleCodesApplyToTheNextRecord) {
    AddKeypadAndButtons();
    ASSERT_EQ(0, setKeyDevices("gpio-keys"));
    ASSERT_EQ(0, InitKeypad());
    const std::pair<int, int> common[] = {
        {KEY_UP, VANTOR_KEY_UP},
        {KEY_LEFT, VANTOR_KEY_UP},
        {KEY_VOLUMEUP, VANTOR_KEY_UP},
        {KEY_DOWN, VANTOR_KEY_DOWN},
        {KEY_RIGHT, VANTOR_KEY_DOWN},
        {KEY_VOLUMEDOWN, VANTOR_KEY_DOWN},
        {KEY_ENTER, VANTOR_KEY_OK},
        {KEY_KPENTER, VANTOR_KEY_OK},
        {KEY_POWER, VANTOR_KEY_OK},
        {KEY_SPACE, VANTOR_KEY_SELECT},
        {KEY_BACKSPACE, VANTOR_KEY_BACK},
        {KEY_ESC, VANTOR_KEY_CANCEL},
        {KEY_HOME, VANTOR_KEY_HOME},
        {KEY_PROG2, VANTOR_KEY_OK},
        {KEY_A, -1},
    };
    for (int set : {VANTOR_KEYCODES_TCA8418, VANTOR_KEYCODES_COMMON}) {
        ASSERT_EQ(0, resetKeyCodes(set));
        for (const auto& [code, key] : common) {
            Press(code, 12);
            const int expected = set == VANTOR_KEYCODES_COMMON || code == KEY_PROG2 ? key : -1;
            EXPECT_EQ(expected, WaitKey(0.0f)) << set << " " << code;
        }
    }
    ASSERT_EQ(0, setKeyCode(KEY_A, VANTOR_KEY_HOME));
    ASSERT_EQ(0, setKeyCode(KEY_POWER, 0));
    const std::pair<int, int> changed[] = {{KEY_A, VANTOR_KEY_HOME}, {KEY_POWER, -1}};
    for (const auto& [code, key] : changed) {
        Press(code, 12);
        EXPECT_EQ(key, WaitKey(0.0f)) << code;
    }
}

// With both devices full of presses, the answers take turns: neither starves the other.
TEST_F(KeyDevices, TwoDevicesBothAnswerInTurn) {
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
