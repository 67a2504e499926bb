// SPDX-License-Identifier: MIT
// Keeping the kernel console off the picture, on the platform layer's virtual terminal:
// taken only when asked, given back when asked and at unload, or left off on purpose
// for the commands of a script. After a crash it comes back from the crash handler,
// which every caught signal runs (CrashReportTest); the real-kernel console scenario
// crashes a program and checks the terminal.
#include <linux/kd.h>

#include <cerrno>

#include "InterfaceFixture.h"
#include "TestSupport.h"
#include "vantor/Context.h"
#include "vantor_platform.h"

TEST_F(Interface, ConsoleModesAndWhenTheyAreGivenBack) {
    const struct {
        int found, mode, result, now, afterUnload;  // terminal modes before and after
    } cases[] = {
        {KD_TEXT, VANTOR_CONSOLE_OFF, 0, KD_GRAPHICS, KD_TEXT},
        // Left off by an earlier command of a script: it stays off for the script.
        {KD_GRAPHICS, VANTOR_CONSOLE_OFF, 0, KD_GRAPHICS, KD_GRAPHICS},
        {KD_TEXT, VANTOR_CONSOLE_OFF_KEPT, 0, KD_GRAPHICS, KD_GRAPHICS},
        {KD_GRAPHICS, VANTOR_CONSOLE_ON, 0, KD_TEXT, KD_TEXT},
        {KD_TEXT, 3, -1, KD_TEXT, KD_TEXT},
    };
    const int descriptors = VantorTest::OpenDescriptors();
    for (const auto& c : cases) {
        ASSERT_EQ(0, vp_vt_add(c.found));
        EXPECT_EQ(c.result, setConsoleGraphics(c.mode)) << c.mode;
        EXPECT_EQ(c.now, vp_vt_mode()) << c.mode;
        Vantor::VantorCleanup();
        Vantor::VantorInit();
        EXPECT_EQ(c.afterUnload, vp_vt_mode()) << c.mode;
        EXPECT_EQ(descriptors, VantorTest::OpenDescriptors()) << c.mode;
    }
}

TEST_F(Interface, WithoutAUsableTerminalTheConsoleIsLeftAlone) {
    EXPECT_EQ(-19, setConsoleGraphics(VANTOR_CONSOLE_OFF));  // no /dev/tty0
    ASSERT_EQ(0, vp_vt_add(KD_TEXT));
    vp_fail_call("open", EACCES, 1);
    EXPECT_EQ(-13, setConsoleGraphics(VANTOR_CONSOLE_OFF));
    vp_fail_call("ioctl", EPERM, 2);  // KDSETMODE, after KDGETMODE
    EXPECT_EQ(-13, setConsoleGraphics(VANTOR_CONSOLE_OFF));
    vp_fail_call("ioctl", ENOTTY, 1);  // a serial line is no virtual terminal
    EXPECT_EQ(-19, setConsoleGraphics(VANTOR_CONSOLE_ON));
    EXPECT_EQ(KD_TEXT, vp_vt_mode());
}
