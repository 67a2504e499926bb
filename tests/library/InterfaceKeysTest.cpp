// SPDX-License-Identifier: MIT
// Keys, menus, dialogs and the progress window through the C interface, with key
// presses coming from virtual input devices.
#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <thread>
#include <utility>

#include "InterfaceFixture.h"
#include "vantor/Context.h"
#include "vantor/Keypad.h"
#include "vantor/Menu.h"
#include "vantor/Progress.h"
#include "vantor_platform.h"

using Vantor::pContext;

namespace {

const char* kEntries[] = {"A", "B", "C", nullptr};

}  // namespace

// With a key waiting, a time-out that fails at once leaves it there, and any other
// (however large) takes it at once. Without a device a caller looping on -1 idles.
TEST_F(Interface, WaitKeyTimeOuts) {
    EXPECT_EQ(-1, WaitKey(0.5f));  // no keypad
    EXPECT_EQ(-19, InitKeypad());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(-1, WaitKey(0.3f));  // no device
    EXPECT_GT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(250));
    AddKeypad();
    ASSERT_EQ(0, InitKeypad());
    const float inf = std::numeric_limits<float>::infinity();
    const int ok = VANTOR_KEY_OK;
    const std::pair<float, int> cases[] = {{-1.0f, -1},  {-inf, -1},  {std::nanf(""), -1},
                                           {-1e30f, -1}, {0.0f, ok},  {inf, ok},
                                           {1e30f, ok},  {1e-30f, ok}};
    for (const auto& [timeout, key] : cases) {
        Press(kOk);
        EXPECT_EQ(key, WaitKey(timeout)) << timeout;
        WaitKey(0.0f);  // takes the key where it was left
    }
}

// A signal (a timer, a child ending) arriving during a wait must not end it early: the
// key pressed after the signal is still the answer.
TEST_F(Interface, ASignalDuringAWaitDoesNotEndIt) {
    AddKeypad();
    ASSERT_EQ(0, InitKeypad());
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    struct sigaction old;
    sigaction(SIGUSR1, &action, &old);
    const pthread_t waiter = pthread_self();
    std::thread presser([this, waiter] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        pthread_kill(waiter, SIGUSR1);
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        Press(kOk);
    });
    EXPECT_EQ(VANTOR_KEY_OK, WaitKey(5.0f));
    presser.join();
    sigaction(SIGUSR1, &old, nullptr);
}

// After hot-plugs the event node's number is not the input device's; the node is the
// one the input device's own eventM entry names, and eventN only where it has none. A
// name shorter than "tca8418" is another device.
TEST_F(Interface, KeypadIsFoundByNamePrefixAndItsOwnEventNode) {
    AddKeypad(1, "tca841");
    ASSERT_EQ(0, vp_input_add_numbered(0, 2, "gpio-keys"));  // event2 is another device's
    ASSERT_EQ(0, vp_input_add_numbered(2, 0, "tca8418-keypad"));
    ASSERT_EQ(0, InitKeypad());
    EXPECT_STREQ("/dev/input/event0", pContext->pKeypad->pDevicePath);
    EXPECT_EQ(0, InitKeypad());
    EXPECT_EQ(1, vp_input_open_count(2));
    // Programs the host starts must not inherit the node.
    EXPECT_TRUE(fcntl(pContext->pKeypad->fd, F_GETFD) & FD_CLOEXEC);

    vp_reset();
    ASSERT_EQ(0, vp_input_add_name(3, "tca8418"));
    ASSERT_EQ(0, vp_input_add(5, nullptr));
    EXPECT_EQ(-19, InitKeypad());
    EXPECT_STREQ("/dev/input/event3", pContext->pKeypad->pDevicePath);
}

// Only a press of a keypad key is a key: the driver's scan code and sync records,
// releases, repeats and other keys give -1. Hosts holding many sockets give the keypad
// a descriptor above 1023, so it is moved there first.
TEST_F(Interface, KeyPressesAreTranslatedAndEverythingElseIsMinusOne) {
    AddKeypad();
    rlimit limit;
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = std::max<rlim_t>(limit.rlim_cur, std::min<rlim_t>(limit.rlim_max, 1501));
    setrlimit(RLIMIT_NOFILE, &limit);
    std::vector<int> fillers;  // every free descriptor below 1500, so the keypad gets 1500
    for (int k = 3; k < 1500; ++k) {
        if (fcntl(k, F_GETFD) == -1 && dup2(2, k) == k) fillers.push_back(k);
    }
    ASSERT_EQ(0, InitKeypad());
    for (int k : fillers) close(k);
    ASSERT_EQ(1500, pContext->pKeypad->fd);

    ASSERT_EQ(0, vp_input_key(0, kSelect, 1));
    Press(kSelect, 0, 0);  // release
    Press(kOk, 0, 2);      // auto-repeat
    Press(KEY_A);          // a key that is not on the keypad
    Press(kOk);
    const int expected[] = {-1, VANTOR_KEY_SELECT, -1, -1, -1, -1, VANTOR_KEY_OK, -1};
    for (int key : expected) EXPECT_EQ(key, WaitKey(0.0f));
}

// Stepping wraps at both ends, and however the menu is left it gives the screen back.
TEST_F(Interface, MenuAnswersTheKeysOfTheKeypad) {
    FillScreen(0x123456);
    InitFramebuffer("/dev/fb0");
    AddKeypad();
    InitKeypad();
    const std::vector<uint32_t> before = Snapshot();
    // Up from the first entry wraps to the last, down from the last to the first.
    const std::pair<std::vector<int>, int> cases[] = {
        {{kDown, kDown, kOk}, 3},        {{kUp, kSelect}, 3},
        {{kDown, kDown, kDown, kOk}, 1}, {{kBack}, VANTOR_MENU_BACK},
        {{kCancel}, VANTOR_MENU_CANCEL}, {{kHome}, VANTOR_MENU_HOME},
    };
    for (const auto& [keys, result] : cases) {
        InitMenu(10, 10);
        Script(keys);
        EXPECT_EQ(result, ShowMenu(kEntries, eMenuVertical, eAlignLeft)) << keys[0];
        EXPECT_TRUE(before == Snapshot()) << keys[0];
    }
}

// Menus and dialogs refuse what they cannot wait for; a second ShowMenu appends its
// entries (numbered from 1 again) and starts where the first was left.
TEST_F(Interface, ShowMenuRefusesOrAppends) {
    InitFramebuffer("/dev/fb0");
    InitMenu(0, 0);
    InitDialog(10, 10, 200, 80);
    const char* lines[] = {"Sure?", nullptr};
    EXPECT_EQ(-2, ShowMenu(kEntries, eMenuVertical, eAlignLeft));
    EXPECT_EQ(-2, ShowDialog(lines, eDialogYesNo, eAlignLeft));
    EXPECT_EQ(-19, InitKeypad());  // a keypad object without a device
    EXPECT_EQ(-2, ShowMenu(kEntries, eMenuVertical, eAlignLeft));
    EXPECT_EQ(0, ShowDialog(lines, 0, eAlignLeft));  // no buttons: nothing to wait for

    AddKeypad();
    InitKeypad();
    InitMenu(0, 0);
    Script({kDown, kBack});
    EXPECT_EQ(VANTOR_MENU_BACK, ShowMenu(kEntries, eMenuVertical, eAlignLeft));
    Script({kOk});
    EXPECT_EQ(2, ShowMenu(kEntries, eMenuVertical, eAlignLeft));
    EXPECT_EQ(6u, pContext->pMenu->objects.size());
    const char* none[] = {nullptr};
    InitMenu(0, 0);
    EXPECT_EQ(-1, ShowMenu(none, eMenuVertical, eAlignLeft));
    EXPECT_EQ(-2, ShowMenu(nullptr, eMenuVertical, eAlignLeft));
}

// A keypad unplugged while a host waits (controller reset, driver unbound) ends the
// wait instead of leaving a menu or dialog waiting for ever; InitKeypad finds it again,
// and the widgets made before it use the new keypad.
TEST_F(Interface, KeypadLostDuringAWaitEndsTheWaitUntilInitKeypadFindsItAgain) {
    alarm(60);  // the fault this looks for is a wait without end: fail, don't hang
    FillScreen(0x336699);
    InitFramebuffer("/dev/fb0");
    InitMenu(20, 30);
    InitDialog(100, 100, 200, 80);
    const char* lines[] = {"Sure?", nullptr};
    int waits = 0;
    const auto removeAfterOneKey = [](int, void* count) {
        if (++*static_cast<int*>(count) == 2) vp_input_remove(0);
    };
    vp_set_wait_hook(removeAfterOneKey, &waits);
    for (bool dialog : {false, true}) {
        waits = 0;
        AddKeypad();
        ASSERT_EQ(0, InitKeypad());
        Script({kDown});
        EXPECT_EQ(-2, dialog ? ShowDialog(lines, eDialogYesNo, eAlignLeft)
                             : ShowMenu(kEntries, eMenuVertical, eAlignLeft));
        EXPECT_EQ(-1, WaitKey(0.0f));
        EXPECT_EQ(0x336699u, Pixel(20 + 5, 30 + 5));  // the menu took itself off the screen
    }
    AddKeypad();
    ASSERT_EQ(0, InitKeypad());
    Script({kBack});
    EXPECT_EQ(VANTOR_MENU_BACK, ShowMenu(kEntries, eMenuVertical, eAlignLeft));
    Script({kUp, kSelect});
    EXPECT_EQ(1, ShowDialog(lines, eDialogYesNo, eAlignLeft));
    alarm(0);
}

// The type decides the buttons and so the answer; a dialog without buttons is painted
// and stays until HideDialog. Nothing is saved under a dialog: it leaves black.
TEST_F(Interface, DialogTypesAnswerAndHideLeavesBlack) {
    FillScreen(0x445566);
    InitFramebuffer("/dev/fb0");
    AddKeypad();
    InitKeypad();
    EXPECT_EQ(-2, HideDialog());
    InitDialog(20, 20, 200, 100);
    InitMenu(0, 0);  // the dialog stays
    const char* lines[] = {"Line one", "Line two", nullptr};
    const struct {
        int type;
        std::vector<int> keys;
        int result;
    } cases[] = {{eDialogOkCancel, {kSelect}, 2},
                 {eDialogYesNo, {kUp, kOk}, 1},
                 {eDialogYesNo, {kOk}, 2},  // No is chosen first
                 {eDialogOk, {kUp, kDown, kOk}, 1},
                 {7, {}, -1}};
    for (const auto& c : cases) {
        if (!c.keys.empty()) Script(c.keys);
        EXPECT_EQ(c.result, ShowDialog(lines, c.type, eAlignLeft)) << c.type;
    }
    EXPECT_EQ(0u, Pixel(20, 20));
    EXPECT_EQ(0x445566u, Pixel(19, 20));
    EXPECT_EQ(0, ShowDialog(lines, 0, eAlignLeft));
    EXPECT_TRUE(CellShows('L', 22, 22, 0xFFFFFF, 0));  // shown, lines from (2, 2) of the box
    EXPECT_TRUE(CellShows('L', 22, 38, 0xFFFFFF, 0));
    EXPECT_EQ(0, HideDialog());
    EXPECT_EQ(0u, Pixel(22, 22));
    EXPECT_EQ(-2, ShowDialog(nullptr, 0, eAlignLeft));
}

namespace {

// The bar of the progress window (50, 50, 200, 60) on the screen, right and bottom
// exclusive, and the last column its fill covers for a share of 0..1 (the frame's far
// column is not counted).
using Vantor::CProgress;
const int kBarLeft = 50 + CProgress::kInset, kBarRight = 250 - CProgress::kInset;
const int kBarTop = 110 - CProgress::kInset - CProgress::kBarHeight, kBarMiddle = kBarTop + 7;

int LastFilled(float share) {
    return kBarLeft + int(share * float(kBarRight - kBarLeft - 1)) - 1;
}

}  // namespace

// An update repaints only the bar, whose fill is clamped to 0..100 % and covers its
// share of the bar to the pixel; hiding gives the screen back.
TEST_F(Interface, ProgressWindowShowsUpdatesAndHides) {
    FillScreen(0x778899);
    InitFramebuffer("/dev/fb0");
    EXPECT_EQ(-2, ShowProgress(nullptr, eAlignLeft, 10));
    ASSERT_EQ(0, InitProgress(50, 50, 200, 60));
    const std::vector<uint32_t> before = Snapshot();
    EXPECT_EQ(0, ShowProgress("A long caption", eAlignLeft, 10));
    const std::vector<uint32_t> shown = Snapshot();
    EXPECT_EQ(0, UpdateProgress(nullptr, eAlignLeft, 50));
    const std::vector<uint32_t> updated = Snapshot();
    for (int k = 0; k < kWidth * kHeight; ++k) {
        const int x = k % kWidth, y = k / kWidth;
        const bool inBar =
            x >= kBarLeft && x < kBarRight && y >= kBarTop && y < kBarTop + CProgress::kBarHeight;
        if (!inBar) {
            ASSERT_EQ(shown[k], updated[k]) << x << "," << y;
        }
    }
    // The bar's outline is white, its fill white up to the last column, the rest black;
    // a full bar runs into the outline's right column.
    const int full = LastFilled(1);
    const std::pair<float, int> fills[] = {{50, LastFilled(0.5f)},
                                           {-3, kBarLeft},
                                           {std::nanf(""), kBarLeft},
                                           {0.5f, kBarLeft},
                                           {150, full}};
    for (const auto& [percent, lastWhite] : fills) {
        EXPECT_EQ(0, UpdateProgress(nullptr, eAlignLeft, percent));
        EXPECT_EQ(0xFFFFFFu, Pixel(lastWhite, kBarMiddle)) << percent;
        EXPECT_EQ(lastWhite == full ? 0xFFFFFFu : 0u, Pixel(lastWhite + 1, kBarMiddle)) << percent;
    }
    // A new caption looks as if the window had been shown with it: nothing of a longer
    // one is left beside it.
    EXPECT_EQ(0, UpdateProgress("Short", eAlignLeft, 0));
    const std::vector<uint32_t> updatedCaption = Snapshot();
    EXPECT_EQ(0, HideProgress());
    EXPECT_EQ(0, ShowProgress("Short", eAlignLeft, 0));
    EXPECT_TRUE(updatedCaption == Snapshot());
    EXPECT_EQ(0, HideProgress());
    EXPECT_TRUE(before == Snapshot());
}

TEST_F(Interface, ClearLeavesWidgetsWorking) {
    InitFramebuffer("/dev/fb0");
    AddKeypad();
    InitKeypad();
    InitCanvas(0, 0, kWidth, kHeight);
    InitProgress(50, 50, 200, 60);
    InitMenu(0, 0);
    Script({kBack});
    ShowMenu(kEntries, eMenuVertical, eAlignLeft);
    EXPECT_EQ(0, Clear());
    EXPECT_EQ(0, UpdateProgress(nullptr, eAlignLeft, 50));
    EXPECT_EQ(0, ShowProgress("Again", eAlignLeft, 60));
    EXPECT_EQ(0xFFFFFFu, Pixel(LastFilled(0.6f), kBarMiddle));
    EXPECT_EQ(0u, Pixel(LastFilled(0.6f) + 1, kBarMiddle));
    Script({kOk});
    EXPECT_EQ(1, ShowMenu(kEntries, eMenuVertical, eAlignLeft));
}
