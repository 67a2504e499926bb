// Scenarios that run inside a virtual machine on Debian's own kernel: the framebuffer is
// the vfb driver's, key presses come from a real evdev device made through uinput.
// The tests run in this order; the input devices they make stay for the later ones,
// since input numbers are never reused within a boot.
#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <climits>
#include <cstring>
#include <fstream>
#include <memory>
#include <thread>
#include <vector>

#include "UinputDevice.h"
#include "vantor.h"
#include "vantor/Context.h"
#include "vantor/Framebuffer.h"
#include "vantor/Keypad.h"
#include "vantor/Progress.h"
#include "vantor/ProgressBar.h"

using Vantor::pContext;

namespace {

std::unique_ptr<UinputDevice> decoy, keypad;

const char* kEntries[] = {"A", "B", "C", nullptr};

double SecondsOf(const std::function<void()>& call) {
    const auto start = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void PressAll(std::initializer_list<int> codes) {
    for (int code : codes) keypad->Press(code);
}

// True once the child runs the demo itself: between fork and exec it still holds this
// process's descriptors, the keypad node among them.
bool RunsDemo(pid_t pid) {
    char target[PATH_MAX] = {};
    readlink(("/proc/" + std::to_string(pid) + "/exe").c_str(), target, sizeof(target) - 1);
    const std::string exe = target, demo = VANTOR_DEMO;  // the guest may see it under /host
    return exe.size() >= demo.size() &&
           exe.compare(exe.size() - demo.size(), demo.size(), demo) == 0;
}

bool HasOpen(pid_t pid, const std::string& node) {
    if (!RunsDemo(pid)) return false;
    const std::string dir = "/proc/" + std::to_string(pid) + "/fd";
    DIR* entries = opendir(dir.c_str());
    bool found = false;
    while (dirent* entry = entries ? readdir(entries) : nullptr) {
        char target[PATH_MAX] = {};
        if (readlink((dir + "/" + entry->d_name).c_str(), target, sizeof(target) - 1) > 0) {
            found |= node == target;
        }
    }
    if (entries) closedir(entries);
    return found;
}

}  // namespace

TEST(RealKernel, FramebufferIsMappedAndShowsTheCanvas) {
    ASSERT_NE(nullptr, InitFramebuffer("/dev/fb0"));
    const auto& info = pContext->pFramebuffer->varInfo;
    EXPECT_EQ(800u, info.xres_virtual);
    EXPECT_EQ(480u, info.yres_virtual);
    EXPECT_EQ(32u, info.bits_per_pixel);
    ASSERT_EQ(0, InitCanvas(0, 0, 800, 480));
    WriteText(10, 10, "Real kernel", 0xFFFFFF, 1);
    ASSERT_EQ(0, Update());

    // What a third program reads from the device is what the library wrote.
    std::vector<uint32_t> device(800 * 480);
    const int fd = open("/dev/fb0", O_RDONLY);
    ASSERT_EQ(ssize_t(device.size() * 4), read(fd, device.data(), device.size() * 4));
    close(fd);
    EXPECT_EQ(0, std::memcmp(device.data(), pContext->pFramebuffer->pScreen, device.size() * 4));
    EXPECT_NE(device.end(), std::find(device.begin(), device.end(), 0xFFFFFFu));
}

TEST(RealKernel, AbsentDeviceGivesTheMessages) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_EQ(nullptr, InitFramebuffer("/dev/fb9"));
    std::fflush(stdout);
    EXPECT_EQ("CFramebuffer: can't access frame buffer device at /dev/fb9\n",
              testing::internal::GetCapturedStdout());
    EXPECT_EQ("InitFramebuffer: allocation failed\n", testing::internal::GetCapturedStderr());
    ASSERT_NE(nullptr, InitFramebuffer("/dev/fb0"));
}

TEST(RealKernel, WithoutTheKeypadInitKeypadFailsAndWaitKeyTimesOut) {
    EXPECT_EQ(-19, InitKeypad());
    const double waited = SecondsOf([] { EXPECT_EQ(-1, WaitKey(0.3f)); });
    EXPECT_GT(waited, 0.25);
    EXPECT_LT(waited, 2.0);
}

TEST(RealKernel, KeypadIsFoundByNameAmongSeveralDevices) {
    decoy.reset(new UinputDevice("gpio-keys"));
    keypad.reset(new UinputDevice("tca8418-keypad"));
    ASSERT_TRUE(decoy->Ready() && keypad->Ready());
    ASSERT_EQ(0, InitKeypad());
    EXPECT_EQ(keypad->EventNode(), pContext->pKeypad->pDevicePath);
}

TEST(RealKernel, PressesAreTranslatedAndEverythingElseIsMinusOne) {
    PressAll({50});
    EXPECT_EQ(103, WaitKey(1.0f));
    for (int record = 0; record < 3; ++record)
        EXPECT_EQ(-1, WaitKey(1.0f));  // report, release, report
    PressAll({30});                    // not one of the keypad's keys
    for (int record = 0; record < 4; ++record) EXPECT_EQ(-1, WaitKey(1.0f));
    const double waited = SecondsOf([] { EXPECT_EQ(-1, WaitKey(0.2f)); });
    EXPECT_GT(waited, 0.15);
}

TEST(RealKernel, MenuAndDialogAnswerRealEvents) {
    auto choose = [](std::initializer_list<int> codes) {
        InitMenu(10, 10);
        PressAll(codes);
        return ShowMenu(kEntries, eMenuVertical, eAlignLeft);
    };
    EXPECT_EQ(3, choose({7, 7, 149}));
    EXPECT_EQ(3, choose({6, 50}));
    EXPECT_EQ(0, choose({150}));
    EXPECT_EQ(-3, choose({53}));
    EXPECT_EQ(-4, choose({152}));

    const char* lines[] = {"Proceed?", nullptr};
    InitDialog(100, 100, 300, 100);
    PressAll({50});
    EXPECT_EQ(2, ShowDialog(lines, eDialogOkCancel, eAlignLeft));
    PressAll({6, 149});
    EXPECT_EQ(1, ShowDialog(lines, eDialogYesNo, eAlignLeft));
}

TEST(RealKernel, CopyMovesTheBarOnTheRealScreen) {
    const std::string source = "/tmp/vantor-system-source", target = "/tmp/vantor-system-target";
    std::ofstream(source, std::ios::binary) << std::string(3 << 20, 'x');
    ASSERT_EQ(0, InitProgress(100, 200, 600, 60));
    ASSERT_EQ(0, ShowProgress("Copying", eAlignLeft, 0.0f));
    ASSERT_EQ(0, CopyFileWithProgress(source.c_str(), target.c_str(), nullptr, 100.0f));
    EXPECT_EQ(100.0f, pContext->pProgress->pBar->progress);
    EXPECT_EQ(0xFFFFFFu, pContext->pFramebuffer->pScreen[(200 + 47) * 800 + 100 + 590]);
    std::ifstream copy(target, std::ios::binary | std::ios::ate);
    EXPECT_EQ(std::streamoff(3 << 20), std::streamoff(copy.tellg()));
    EXPECT_EQ(0, HideProgress());
}

TEST(RealKernel, DemoRunsToItsEndWithKeysFromTheDevice) {
    const pid_t demo = fork();
    if (demo == 0) {
        // The library opens the keypad node without close-on-exec; the demo must not
        // inherit this process's, or it would seem to have opened the keypad already.
        for (int fd = 3; fd < 1024; ++fd) close(fd);
        const int log = open("/results/demo.log", O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (log >= 0) {
            dup2(log, 1);
            dup2(log, 2);
        }
        execl(VANTOR_DEMO, VANTOR_DEMO, "/dev/fb0", "800x480", static_cast<char*>(nullptr));
        _exit(127);
    }
    // Events reach only the readers that have the node open: wait for the demo's keypad.
    const std::string node = keypad->EventNode();
    for (int tries = 0; tries < 600 && !HasOpen(demo, node); ++tries) usleep(50000);
    ASSERT_TRUE(HasOpen(demo, node)) << "the demo never opened " << node;
    // Install (confirm with Yes), acknowledge, device information, reboot (Yes).
    PressAll({50, 6, 50, 50, 7, 50, 50, 7, 7, 50, 6, 50});
    int status = -1;
    for (int tries = 0; tries < 1200 && waitpid(demo, &status, WNOHANG) == 0; ++tries)
        usleep(50000);
    if (waitpid(demo, &status, WNOHANG) == 0) {
        kill(demo, SIGKILL);
        // The screen it was stuck on, for a person to look at (raw 800x480 XRGB words).
        std::ifstream screen("/dev/fb0", std::ios::binary);
        std::ofstream("/results/demo-stuck.raw", std::ios::binary) << screen.rdbuf();
        FAIL() << "the demo did not finish within a minute; see demo-stuck.raw";
    }
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}
