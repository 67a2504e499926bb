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
#include <fstream>
#include <sstream>
#include <string>

#include "SystemSupport.h"
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

void Write(const char* device, const char* text) {
    std::ofstream(device) << text << std::flush;
}

// The framebuffer as fbcat decodes it, kept in /results/NAME for the host to compare
// with the simulator's picture.
std::string Reading(const std::string& name) {
    const std::string path = "/results/" + name;
    EXPECT_EQ(0, std::system(("/usr/bin/fbcat /dev/fb0 > " + path).c_str()));
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
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

// fbcon bound to the framebuffer writes while a menu waits with the console kept off:
// two readings a second apart are the same picture (the host compares them with the
// simulator's), and the terminal is in text mode again once the menu has its key.
TEST(ConsoleOnTheFramebuffer, MenuKeepsItsPictureWhileTheConsoleWrites) {
    ASSERT_EQ(KD_TEXT, ConsoleMode());
    std::string first, second;
    const auto meanwhile = [&] {
        sleep(1);  // the keypad is opened just before the menu is drawn
        Write("/dev/tty1", "a getty would write here\n");
        Write("/dev/kmsg", "<3>vantor: a kernel message\n");
        first = Reading("vfb16-console-1.ppm");
        EXPECT_EQ(KD_GRAPHICS, ConsoleMode());
        sleep(1);
        Write("/dev/tty1", "and here\n");
        second = Reading("vfb16-console-2.ppm");
    };
    EXPECT_EQ(0, RunWithKeys("menu.log", {VANTOR_SCREEN, "/dev/fb0", "console-off", "menu"}, {{50}},
                             meanwhile))
        << "see menu.log";
    EXPECT_FALSE(first.empty());
    EXPECT_TRUE(first == second) << "the console drew between the two readings";
    EXPECT_EQ(KD_TEXT, ConsoleMode());
}
