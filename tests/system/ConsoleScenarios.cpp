// SPDX-License-Identifier: MIT
// The kernel console on a real virtual terminal: held off while a program runs, given
// back when it exits and when it crashes, or left off on purpose for a script.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/kd.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

#include "vantor.h"

namespace {

int ConsoleMode() {
    int mode = -1;
    const int fd = open("/dev/tty0", O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (fd >= 0) ioctl(fd, KDGETMODE, &mode);
    if (fd >= 0) close(fd);
    return mode;
}

// A child asks for `mode`, checks that the console is off, then exits or crashes.
int ChildStatus(int mode, bool crash) {
    const pid_t child = fork();
    if (child == 0) {
        if (setConsoleGraphics(mode) != 0 || ConsoleMode() != KD_GRAPHICS) _exit(1);
        volatile uintptr_t address = 0x1c;
        if (crash) *reinterpret_cast<volatile int*>(address) = 1;
        std::exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

}  // namespace

TEST(RealConsole, GivenBackAfterExitAndAfterACrashOrLeftOffOnPurpose) {
    ASSERT_EQ(KD_TEXT, ConsoleMode());
    EXPECT_EQ(0, ChildStatus(VANTOR_CONSOLE_OFF, false));
    EXPECT_EQ(KD_TEXT, ConsoleMode());
    const int crashed = ChildStatus(VANTOR_CONSOLE_OFF, true);
    EXPECT_TRUE(WIFSIGNALED(crashed) && WTERMSIG(crashed) == SIGSEGV) << crashed;
    EXPECT_EQ(KD_TEXT, ConsoleMode());
    EXPECT_EQ(0, ChildStatus(VANTOR_CONSOLE_OFF_KEPT, false));
    EXPECT_EQ(KD_GRAPHICS, ConsoleMode());
    EXPECT_EQ(0, setConsoleGraphics(VANTOR_CONSOLE_ON));
    EXPECT_EQ(KD_TEXT, ConsoleMode());
}
