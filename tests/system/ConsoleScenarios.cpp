// SPDX-License-Identifier: MIT
// The kernel console on a real virtual terminal: held off while a program runs, given
// back when it exits and when it crashes, or left off on purpose for a script.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/kd.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>

#include "vantor.h"

namespace {

int ConsoleMode() {
    int mode = -1;
    const int fd = open("/dev/tty0", O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (fd >= 0) {
        ioctl(fd, KDGETMODE, &mode);
        close(fd);
    }
    return mode;
}

// The wait status of a child that runs `body` and then exits normally.
int InChild(void (*body)()) {
    const pid_t child = fork();
    if (child == 0) {
        body();
        std::exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

void HoldOffAndCheck() {
    if (setConsoleGraphics(VANTOR_CONSOLE_OFF) != 0 || ConsoleMode() != KD_GRAPHICS) _exit(1);
}

void HoldOffAndCrash() {
    HoldOffAndCheck();
    volatile uintptr_t address = 0x1c;
    *reinterpret_cast<volatile int*>(address) = 1;
}

void LeaveOff() {
    if (setConsoleGraphics(VANTOR_CONSOLE_OFF_KEPT) != 0) _exit(1);
}

}  // namespace

TEST(RealConsole, GivenBackAfterExitAndAfterACrashOrLeftOffOnPurpose) {
    ASSERT_EQ(KD_TEXT, ConsoleMode());
    int status = InChild(HoldOffAndCheck);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_EQ(KD_TEXT, ConsoleMode());

    status = InChild(HoldOffAndCrash);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGSEGV) << status;
    EXPECT_EQ(KD_TEXT, ConsoleMode());

    status = InChild(LeaveOff);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_EQ(KD_GRAPHICS, ConsoleMode());
    EXPECT_EQ(0, setConsoleGraphics(VANTOR_CONSOLE_ON));
    EXPECT_EQ(KD_TEXT, ConsoleMode());
}
