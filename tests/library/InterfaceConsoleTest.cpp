// SPDX-License-Identifier: MIT
// Keeping the kernel console off the picture, on the platform layer's virtual terminal:
// taken only when asked, given back when asked, at unload and after a crash, or left
// off on purpose for the commands of a script.
#include <linux/kd.h>
#include <signal.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>

#include "InterfaceFixture.h"
#include "TestSupport.h"
#include "vantor/Context.h"
#include "vantor_platform.h"

namespace {

void Unload() {
    Vantor::VantorCleanup();
    Vantor::VantorInit();
}

}  // namespace

TEST_F(Interface, ConsoleModesAndWhenTheyAreGivenBack) {
    const struct {
        int found;        // the terminal's mode before
        int mode;         // asked for
        int result;       // answer
        int now;          // the terminal's mode after the call
        int afterUnload;  // and after the library is unloaded
    } cases[] = {
        {KD_TEXT, VANTOR_CONSOLE_OFF, 0, KD_GRAPHICS, KD_TEXT},
        // Left off by an earlier command of a script: it stays off for the script.
        {KD_GRAPHICS, VANTOR_CONSOLE_OFF, 0, KD_GRAPHICS, KD_GRAPHICS},
        {KD_TEXT, VANTOR_CONSOLE_OFF_KEPT, 0, KD_GRAPHICS, KD_GRAPHICS},
        {KD_GRAPHICS, VANTOR_CONSOLE_ON, 0, KD_TEXT, KD_TEXT},
        {KD_TEXT, 3, -1, KD_TEXT, KD_TEXT},
        {KD_TEXT, -1, -1, KD_TEXT, KD_TEXT},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(0, vp_vt_add(c.found));
        EXPECT_EQ(c.result, setConsoleGraphics(c.mode)) << c.mode;
        EXPECT_EQ(c.now, vp_vt_mode()) << c.mode;
        Unload();
        EXPECT_EQ(c.afterUnload, vp_vt_mode()) << c.mode;
    }
}

TEST_F(Interface, ConsoleHeldOffIsGivenBackOnRequestWithNothingLeftOpen) {
    ASSERT_EQ(0, vp_vt_add(KD_TEXT));
    const int descriptors = VantorTest::OpenDescriptors();
    EXPECT_EQ(0, setConsoleGraphics(VANTOR_CONSOLE_OFF));
    EXPECT_EQ(0, setConsoleGraphics(VANTOR_CONSOLE_OFF));
    EXPECT_EQ(0, setConsoleGraphics(VANTOR_CONSOLE_ON));
    EXPECT_EQ(KD_TEXT, vp_vt_mode());
    EXPECT_EQ(descriptors, VantorTest::OpenDescriptors());
}

TEST_F(Interface, WithoutAUsableTerminalTheConsoleIsLeftAlone) {
    for (int mode : {VANTOR_CONSOLE_OFF, VANTOR_CONSOLE_OFF_KEPT, VANTOR_CONSOLE_ON}) {
        EXPECT_EQ(-19, setConsoleGraphics(mode));
    }
    ASSERT_EQ(0, vp_vt_add(KD_TEXT));
    vp_fail_call("open", EACCES, 1);
    EXPECT_EQ(-13, setConsoleGraphics(VANTOR_CONSOLE_OFF));
    vp_fail_call("ioctl", EPERM, 2);  // KDSETMODE, after KDGETMODE
    EXPECT_EQ(-13, setConsoleGraphics(VANTOR_CONSOLE_OFF));
    vp_fail_call("ioctl", ENOTTY, 1);  // a serial line is no virtual terminal
    EXPECT_EQ(-19, setConsoleGraphics(VANTOR_CONSOLE_OFF));
    EXPECT_EQ(KD_TEXT, vp_vt_mode());
}

TEST_F(Interface, ACrashGivesTheConsoleBack) {
    const struct {
        void (*crash)();
        int signal;
    } crashes[] = {
        {[] {
             volatile uintptr_t address = 0x1c;
             *reinterpret_cast<volatile int*>(address) = 1;
         },
         SIGSEGV},
        {[] { std::abort(); }, SIGABRT},
    };
    for (const auto& c : crashes) {
        ASSERT_EQ(0, vp_vt_add(KD_TEXT));
        EXPECT_EXIT(
            {
                setConsoleGraphics(VANTOR_CONSOLE_OFF);
                c.crash();
            },
            testing::KilledBySignal(c.signal), "Signal caught!");
        EXPECT_EQ(KD_TEXT, vp_vt_mode());
    }
}
