// Keys from a real evdev device made through uinput: how InitKeypad finds it, what
// WaitKey makes of each record and how long it waits, and how menus and dialogs answer.
#include <gtest/gtest.h>

#include <unistd.h>

#include <memory>
#include <thread>
#include <utility>

#include "SystemSupport.h"
#include "vantor.h"
#include "vantor/Context.h"
#include "vantor/Keypad.h"

using Vantor::pContext;

namespace {

const char* kEntries[] = {"A", "B", "C", nullptr};
const char* kLines[] = {"Proceed?", nullptr};

// A fresh descriptor for every test, so that no record left from an earlier one is read.
class RealKeypad : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_NE(nullptr, InitFramebuffer("/dev/fb0"));
        ASSERT_TRUE(TheKeypad().Ready());
        ASSERT_EQ(0, InitKeypad());
    }
};

int Menu(std::initializer_list<int> codes, int orientation = eMenuVertical) {
    InitMenu(10, 10);
    PressAll(codes);
    return ShowMenu(kEntries, orientation, eAlignLeft);
}

int Dialog(int type, std::initializer_list<int> codes) {
    InitDialog(100, 100, 300, 100);
    PressAll(codes);
    return ShowDialog(kLines, type, eAlignLeft);
}

}  // namespace

// Run with the framebuffer but before this boot has any input device: nothing may wait
// for a key that cannot come, and WaitKey still idles for its time-out.
TEST(NoKeypad, KeyCallsFailWithoutWaitingForEver) {
    ASSERT_NE(nullptr, InitFramebuffer("/dev/fb0"));
    EXPECT_EQ(-19, InitKeypad());
    EXPECT_GT(SecondsOf([] { EXPECT_EQ(-1, WaitKey(0.3f)); }), 0.25);
    ASSERT_EQ(0, InitMenu(10, 10));
    ASSERT_EQ(0, InitDialog(100, 100, 300, 100));
    EXPECT_EQ(-2, ShowMenu(kEntries, eMenuVertical, eAlignLeft));
    for (int type = 1; type <= 3; ++type) EXPECT_EQ(-2, ShowDialog(kLines, type, eAlignLeft));
    EXPECT_EQ(0, ShowDialog(kLines, 0, eAlignLeft));  // no buttons: nothing to wait for
}

// Its event number is not its input number (devices came and went before it).
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
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        keypad.reset();
    });
    EXPECT_EQ(-2, ShowMenu(kEntries, eMenuVertical, eAlignLeft));
    unplug.join();
    EXPECT_EQ(-1, WaitKey(0.0f));
    alarm(0);
}

// Its event number is not its input number: devices came and went before it.
TEST_F(RealKeypad, FoundByNameAmongSeveralDevices) {
    EXPECT_EQ(TheKeypad().EventNode(), pContext->pKeypad->pDevicePath);
}

TEST_F(RealKeypad, EveryKeyIsTranslatedAndTheOtherRecordsAreMinusOne) {
    const std::pair<int, int> keys[] = {{6, 108},  {7, 114}, {50, 103}, {149, 10},
                                        {150, 26}, {152, 9}, {53, 3}};
    for (const auto& key : keys) {
        TheKeypad().Press(key.first);
        EXPECT_EQ(-1, WaitKey(1.0f)) << "device code " << key.first;  // scan code
        EXPECT_EQ(key.second, WaitKey(1.0f)) << "device code " << key.first;
        for (int record = 0; record < 4; ++record)  // report; scan code, release, report
            EXPECT_EQ(-1, WaitKey(1.0f)) << "device code " << key.first;
    }
}

TEST_F(RealKeypad, RepeatsAndForeignKeysAreMinusOne) {
    TheKeypad().Repeat(50);
    PressAll({30});  // a key the keypad does not have
    for (int record = 0; record < 8; ++record) EXPECT_EQ(-1, WaitKey(1.0f));
    EXPECT_EQ(-1, WaitKey(0.0f));
}

// A press during a wait ends it: the scan code first, the key record right behind it.
TEST_F(RealKeypad, WaitKeyWakesForAPressDuringItsWait) {
    std::thread presser([] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        PressAll({50});
    });
    EXPECT_EQ(-1, WaitKey(10.0f));
    EXPECT_EQ(103, WaitKey(1.0f));
    presser.join();
}

// The real driver's extra records must not move a menu or choose in a dialog.
TEST_F(RealKeypad, MenusAndDialogsAnswerTheKeypad) {
    EXPECT_EQ(3, Menu({6, 50}));        // up from the first entry
    EXPECT_EQ(1, Menu({7, 7, 7, 50}));  // down from the last
    EXPECT_EQ(1, Menu({30, 149}));      // a foreign key changes nothing
    EXPECT_EQ(2, Menu({7, 149}, eMenuHorizontal));
    EXPECT_EQ(-4, Menu({152}));
    EXPECT_EQ(2, Dialog(eDialogOkCancel, {50}));  // Cancel is the one selected at first
    EXPECT_EQ(1, Dialog(eDialogYesNo, {6, 149}));
    EXPECT_EQ(-3, Dialog(eDialogOkCancel, {53}));
}
