// A keypad that goes away on a real kernel. Finding the keypad among other devices and
// what a press sends are met by the demo and the installer, which run on keys from the
// device.
#include <gtest/gtest.h>
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
