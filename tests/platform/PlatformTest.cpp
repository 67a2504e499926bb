// The platform layer seen through the plain system calls a program makes.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fb.h>
#include <linux/input.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/select.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <string>

#include "vantor_platform.h"

namespace {

class Platform : public ::testing::Test {
  protected:
    void SetUp() override { vp_reset(); }
    void TearDown() override { vp_reset(); }
};

int WaitReadable(int fd, double seconds) {
    fd_set set;
    FD_ZERO(&set);
    FD_SET(fd, &set);
    timeval timeout = {long(seconds), long((seconds - long(seconds)) * 1e6)};
    return select(fd + 1, &set, nullptr, nullptr, &timeout);
}

}  // namespace

TEST_F(Platform, FramebufferAnswersItsIoctlsAndMapsSharedMemory) {
    vp_screen screen = {800, 480, 800, 960, 32, 0};
    ASSERT_EQ(0, vp_fb_add("/dev/fb1", &screen));
    const int fd = open("/dev/fb1", O_RDWR);
    ASSERT_GT(fd, 0);
    EXPECT_EQ(1, vp_fb_open_count("/dev/fb1"));
    fb_var_screeninfo var;
    fb_fix_screeninfo fix;
    ASSERT_EQ(0, ioctl(fd, FBIOGET_VSCREENINFO, &var));
    ASSERT_EQ(0, ioctl(fd, FBIOGET_FSCREENINFO, &fix));
    EXPECT_EQ(960u, var.yres_virtual);
    EXPECT_EQ(32u, var.bits_per_pixel);
    EXPECT_EQ(3200u, fix.line_length);
    auto* pixels = static_cast<uint32_t*>(
        mmap(nullptr, 800 * 960 * 4, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0));
    ASSERT_NE(MAP_FAILED, pixels);
    pixels[2 * 800 + 10] = 0xABCDEF;
    EXPECT_EQ(0xABCDEFu, vp_fb_pixels("/dev/fb1")[1610]);
    munmap(pixels, 800 * 960 * 4);
    close(fd);
    EXPECT_EQ(1, vp_fb_unmap_count("/dev/fb1"));
    EXPECT_EQ(0, vp_fb_open_count("/dev/fb1"));
}

TEST_F(Platform, InjectedFailuresAndMissingVirtualPaths) {
    vp_screen screen = {64, 32, 64, 32, 32, 0};
    vp_fb_add("/dev/fb0", &screen);
    vp_fb_fail("/dev/fb0", VP_FAIL_VSCREENINFO | VP_FAIL_MMAP);
    const int fd = open("/dev/fb0", O_RDWR);
    fb_var_screeninfo var;
    EXPECT_EQ(-1, ioctl(fd, FBIOGET_VSCREENINFO, &var));
    EXPECT_EQ(MAP_FAILED, mmap(nullptr, 64 * 32 * 4, PROT_READ, MAP_SHARED, fd, 0));
    close(fd);
    vp_fb_fail("/dev/fb0", VP_FAIL_OPEN);
    EXPECT_EQ(-1, open("/dev/fb0", O_RDWR));
    EXPECT_EQ(-1, open("/dev/fb3", O_RDWR));  // virtual prefix, nothing there: not the host's
    EXPECT_EQ(-1, access("/usr/share/fonts/vantor/lr.tf", F_OK));
    ASSERT_EQ(0, vp_file_add("/usr/share/fonts/vantor/lr.tf", "font", 4));
    EXPECT_EQ(0, access("/usr/share/fonts/vantor/lr.tf", F_OK));
}

TEST_F(Platform, NameFilesReadThroughStreamsAndDirectoriesMapOntoRealOnes) {
    vp_input_add(3, "tca8418");
    std::ifstream name("/sys/class/input/input3/name");
    std::string text((std::istreambuf_iterator<char>(name)), std::istreambuf_iterator<char>());
    EXPECT_EQ("tca8418\n", text);

    char dir[] = "/tmp/vantor-platform-test-XXXXXX";
    ASSERT_NE(nullptr, mkdtemp(dir));
    std::ofstream(std::string(dir) + "/lb.tf") << "bold";
    vp_dir_map("/usr/share/fonts/vantor", dir);
    std::ifstream font("/usr/share/fonts/vantor/lb.tf");
    std::string word;
    font >> word;
    EXPECT_EQ("bold", word);
    unlink((std::string(dir) + "/lb.tf").c_str());
    rmdir(dir);
}

TEST_F(Platform, EventNodesTimeOutAndDeliverOneRecordPerRead) {
    vp_input_add(0, "tca8418");
    const int fd = open("/dev/input/event0", O_RDONLY);
    ASSERT_GT(fd, 0);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(0, WaitReadable(fd, 0.1));
    EXPECT_GT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(90));
    vp_input_press(0, 50);
    input_event event;
    ASSERT_EQ(1, WaitReadable(fd, 0.1));
    ASSERT_EQ(ssize_t(sizeof(event)), read(fd, &event, sizeof(event)));
    EXPECT_EQ(EV_KEY, event.type);
    EXPECT_EQ(50, event.code);
    EXPECT_EQ(1, event.value);
    ASSERT_EQ(ssize_t(sizeof(event)), read(fd, &event, sizeof(event)));
    EXPECT_EQ(0, event.value);
    EXPECT_EQ(1, vp_input_open_count(0));
    close(fd);
    EXPECT_EQ(0, vp_input_open_count(0));
}

TEST_F(Platform, ScriptFeedsOneKeyPerWaitAfterTheHookHasLooked) {
    vp_input_add(1, "tca8418");
    vp_input_script(1, "6, 7 50");
    static int looks = 0;
    looks = 0;
    vp_set_wait_hook([](int index, void*) { looks += index; }, nullptr);
    const int fd = open("/dev/input/event1", O_RDONLY);
    input_event event;
    std::string codes;
    for (int i = 0; i < 3; ++i) {  // one press per wait
        ASSERT_EQ(1, WaitReadable(fd, 0.0));
        read(fd, &event, sizeof(event));
        if (event.value == 1) codes += std::to_string(event.code) + " ";
    }
    EXPECT_EQ("6 7 50 ", codes);
    EXPECT_EQ(3, looks);  // once per key
    EXPECT_EQ(0, vp_input_script_left(1));
    close(fd);
}

TEST(PlatformDeathTest, ExhaustedScriptEndsTheProgramInsteadOfHanging) {
    EXPECT_EXIT(
        {
            vp_input_add(0, "tca8418");
            vp_input_script(0, "");
            vp_set_exit_when_exhausted(1);
            const int fd = open("/dev/input/event0", O_RDONLY);
            WaitReadable(fd, 10.0);
        },
        ::testing::ExitedWithCode(70), "key script exhausted");
}
