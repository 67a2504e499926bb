// SPDX-License-Identifier: MIT
// Key devices that go away on a real kernel. Finding the keypad among other devices and
// what a press sends are met by the demo and the installer, which run on keys from the
// device.
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <unistd.h>

#include <memory>
#include <thread>

#include "UinputDevice.h"
#include "vantor.h"

// A keypad whose controller is reset or whose driver is unbound while a menu waits ends
// the menu. Alone in its process, so that it is the only tca8418 device.
TEST(RemovedKeypad, MenuAnswersMinusTwo) {
    alarm(60);  // the fault looked for is a menu that never returns: fail, don't hang
    const char* entries[] = {"A", "B", "C", nullptr};
    ASSERT_NE(nullptr, InitFramebuffer("/dev/fb0"));
    auto keypad = std::make_unique<UinputDevice>("tca8418-keypad");
    ASSERT_TRUE(keypad->Ready());
    ASSERT_EQ(0, InitKeypad());
    ASSERT_EQ(0, InitMenu(10, 10));
    std::thread unplug([&keypad] {
        usleep(500000);
        keypad.reset();
    });
    EXPECT_EQ(-2, ShowMenu(entries, eMenuVertical, eAlignLeft));
    unplug.join();
    EXPECT_EQ(-1, WaitKey(0.0f));
    alarm(0);
}

// Volume and power buttons beside the keypad, both pressed during one menu; the buttons
// go away in the middle and the menu goes on with the keypad. Steps wrap around the
// four entries, so the entry chosen depends only on how many steps each way were
// taken, whichever device's key came first.
TEST(ButtonsAndKeypad, MenuGoesOnWhenTheButtonsAreUnplugged) {
    alarm(60);
    const char* entries[] = {"A", "B", "C", "D", nullptr};
    ASSERT_NE(nullptr, InitFramebuffer("/dev/fb0"));
    auto keypad = std::make_unique<UinputDevice>("tca8418-keypad");
    auto buttons = std::make_unique<UinputDevice>("gpio-keys", UinputDevice::kButtons);
    ASSERT_TRUE(keypad->Ready() && buttons->Ready());
    ASSERT_EQ(0, setKeyDevices("tca8418,gpio-keys"));
    ASSERT_EQ(0, resetKeyCodes(VANTOR_KEYCODES_COMMON));
    ASSERT_EQ(0, InitKeypad());
    ASSERT_EQ(0, InitMenu(10, 10));
    std::thread presser([&keypad, &buttons] {
        const auto pause = [] { usleep(300000); };
        pause();
        buttons->Press(KEY_VOLUMEDOWN);
        pause();
        keypad->Press(KEY_5);  // up
        pause();
        buttons->Press(KEY_VOLUMEDOWN);
        pause();
        buttons.reset();
        pause();
        keypad->Press(KEY_6);  // down
        pause();
        keypad->Press(KEY_6);
        pause();
        keypad->Press(KEY_PROG2);  // ok
    });
    EXPECT_EQ(4, ShowMenu(entries, eMenuVertical, eAlignLeft));
    presser.join();
    keypad.reset();
    EXPECT_EQ(-1, WaitKey(0.0f));
    EXPECT_EQ(-2, ShowMenu(entries, eMenuVertical, eAlignLeft));
    alarm(0);
}
