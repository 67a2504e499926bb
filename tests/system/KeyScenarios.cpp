// Keys from a real evdev device made through uinput: how InitKeypad finds it and what
// WaitKey makes of each record. Menus and dialogs meet the device in the demo and the
// installer, whose runs end only if every key did what it should.
#include <gtest/gtest.h>
#include <unistd.h>

#include <memory>
#include <thread>
#include <vector>

#include "SystemSupport.h"
#include "vantor.h"

namespace {

const char* kEntries[] = {"A", "B", "C", nullptr};
const char* kLines[] = {"Proceed?", nullptr};

// The keys WaitKey answers for what the device sent. Ten answers are more than the
// records of a press and its release, so every record is read.
std::vector<int> KeysAnswered() {
    std::vector<int> keys;
    for (int record = 0; record < 10; ++record)
        if (const int key = WaitKey(0.1f); key != -1) keys.push_back(key);
    return keys;
}

}  // namespace

// Run with the framebuffer but before this boot has any input device: nothing may wait
// for a key that cannot come.
TEST(NoKeypad, KeyCallsFailWithoutWaitingForEver) {
    ASSERT_NE(nullptr, InitFramebuffer("/dev/fb0"));
    EXPECT_EQ(-19, InitKeypad());
    EXPECT_EQ(-1, WaitKey(0.1f));
    ASSERT_EQ(0, InitMenu(10, 10));
    ASSERT_EQ(0, InitDialog(100, 100, 300, 100));
    EXPECT_EQ(-2, ShowMenu(kEntries, eMenuVertical, eAlignLeft));
    for (int type = 1; type <= 3; ++type) EXPECT_EQ(-2, ShowDialog(kLines, type, eAlignLeft));
    EXPECT_EQ(0, ShowDialog(kLines, 0, eAlignLeft));  // no buttons: nothing to wait for
}

// A keypad whose controller is reset or whose driver is unbound while a menu waits ends
// the menu. Alone in its process, so that it is the only tca8418 device.
TEST(RemovedKeypad, MenuAnswersMinusTwo) {
    alarm(60);  // the fault looked for is a menu that never returns: fail, don't hang
    ASSERT_NE(nullptr, InitFramebuffer("/dev/fb0"));
    auto keypad = std::make_unique<UinputDevice>("tca8418-keypad");
    ASSERT_TRUE(keypad->Ready());
    ASSERT_EQ(0, InitKeypad());
    ASSERT_EQ(0, InitMenu(10, 10));
    std::thread unplug([&keypad] {
        usleep(500000);
        keypad.reset();
    });
    EXPECT_EQ(-2, ShowMenu(kEntries, eMenuVertical, eAlignLeft));
    unplug.join();
    EXPECT_EQ(-1, WaitKey(0.0f));
    alarm(0);
}

// Found among devices with similar names, at its own event node (devices came and went
// before it), each key is answered once; the scan codes, releases, reports, repeats and
// keys the keypad does not have are never taken for a key.
TEST(RealKeypad, EachKeyIsAnsweredOnceAndNothingElse) {
    ASSERT_NE(nullptr, InitFramebuffer("/dev/fb0"));
    ASSERT_TRUE(TheKeypad().Ready());
    ASSERT_EQ(0, InitKeypad());
    const std::pair<int, int> keys[] = {{6, 108},  {7, 114}, {50, 103}, {149, 10},
                                        {150, 26}, {152, 9}, {53, 3}};
    for (const auto& [code, key] : keys) {
        TheKeypad().Press(code);
        EXPECT_EQ(std::vector<int>{key}, KeysAnswered()) << "device code " << code;
    }
    TheKeypad().Repeat(50);
    TheKeypad().Press(30);
    EXPECT_EQ(std::vector<int>{}, KeysAnswered());
}
