// Framebuffers, plain files and everything that is not ours, through the calls the
// library makes.
#include <errno.h>
#include <fcntl.h>
#include <linux/fb.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include "PlatformTest.h"

namespace {

const char* const kFont = "/usr/share/fonts/vantor/lr.tf";

struct ScreenInfo {
    int ioctls[2];
    fb_var_screeninfo var;
    fb_fix_screeninfo fix;
};

ScreenInfo AskScreen(int fd) {
    ScreenInfo info;
    info.ioctls[0] = ioctl(fd, FBIOGET_VSCREENINFO, &info.var);
    info.ioctls[1] = ioctl(fd, FBIOGET_FSCREENINFO, &info.fix);
    return info;
}

std::string ReadAll(const char* path) {
    std::ifstream in(path);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace

TEST_F(Platform, FramebufferAnswersLikeADriverAndSharesItsMemory) {
    vp_screen screen = {800, 480, 800, 960, 32, 0};
    ASSERT_EQ(0, vp_fb_add("/dev/fb1", &screen));
    const int fd = open("/dev/fb1", O_RDWR);
    ASSERT_GE(fd, 0);
    const ScreenInfo info = AskScreen(fd);
    ASSERT_EQ(0, info.ioctls[0]);
    ASSERT_EQ(0, info.ioctls[1]);
    EXPECT_EQ(800u, info.var.xres);
    EXPECT_EQ(480u, info.var.yres);
    EXPECT_EQ(800u, info.var.xres_virtual);
    EXPECT_EQ(960u, info.var.yres_virtual);
    EXPECT_EQ(16u, info.var.red.offset);  // layouts and sizes: the table test below
    EXPECT_STREQ("vantor-virt", info.fix.id);
    EXPECT_EQ(unsigned(FB_TYPE_PACKED_PIXELS), info.fix.type);
    EXPECT_EQ(unsigned(FB_VISUAL_TRUECOLOR), info.fix.visual);

    const size_t size = 800 * 960 * 4;
    auto* pixels =
        static_cast<uint32_t*>(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0));
    ASSERT_NE(MAP_FAILED, pixels);
    pixels[2 * 800 + 10] = 0xABCDEF;
    EXPECT_EQ(0xABCDEFu, vp_fb_pixels("/dev/fb1")[2 * 800 + 10]);
    vp_fb_pixels("/dev/fb1")[size / 4 - 1] = 0x123456;  // the last pixel of the back page
    EXPECT_EQ(0x123456u, pixels[size / 4 - 1]);

    const int second = open("/dev/fb1", O_RDONLY);
    EXPECT_EQ(2, vp_fb_open_count("/dev/fb1"));
    close(second);
    EXPECT_EQ(0, munmap(pixels, size));
    close(fd);
    EXPECT_EQ(0, vp_fb_open_count("/dev/fb1"));
    EXPECT_EQ(2, vp_fb_close_count("/dev/fb1"));
    EXPECT_EQ(1, vp_fb_unmap_count("/dev/fb1"));
}

TEST_F(Platform, ScreenLayoutsOffsetsAndTheMemoryBehindThem) {
    struct Case {
        vp_screen screen;
        unsigned bits, lineLength, redOffset, redLength, blueOffset;
    };
    const Case cases[] = {
        {{100, 50, 100, 50, 32, 512}, 32, 512, 16, 8, 0},  // padded rows
        {{64, 32, 64, 32, 16, 0}, 16, 128, 11, 5, 0},      // the usual 16-bit layout
        {{64, 32, 64, 32, 0, 0, VP_XBGR8888}, 32, 256, 0, 8, 16},
        {{64, 32, 64, 32, 0, 0, VP_BGRX8888}, 32, 256, 8, 8, 24},
        {{64, 32, 64, 32, 0, 200, VP_BGR888}, 24, 200, 0, 8, 16},
        {{64, 32, 64, 32, 0, 0, VP_BGR565}, 16, 128, 0, 5, 11},
        {{64, 32, 64, 32, 0, 0, VP_PALETTE8}, 8, 64, 0, 8, 0},
        {{64, 32, 80, 64, 32, 0, 0, 16, 32}, 32, 320, 16, 8, 0},  // panned to the second page
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.screen.layout * 1000 + c.screen.line_length);
        ASSERT_EQ(0, vp_fb_add("/dev/fb0", &c.screen));
        const int fd = open("/dev/fb0", O_RDWR);
        ScreenInfo info = AskScreen(fd);
        EXPECT_EQ(c.bits, info.var.bits_per_pixel);
        EXPECT_EQ(c.lineLength, info.fix.line_length);
        EXPECT_EQ(c.lineLength * info.var.yres_virtual, info.fix.smem_len);
        EXPECT_EQ(c.redOffset, info.var.red.offset);
        EXPECT_EQ(c.redLength, info.var.red.length);
        EXPECT_EQ(c.blueOffset, info.var.blue.offset);
        EXPECT_EQ(unsigned(c.screen.xoffset), info.var.xoffset);
        EXPECT_EQ(unsigned(c.screen.yoffset), info.var.yoffset);
        // Panning is answered and counted; the page stays where it is.
        EXPECT_EQ(0, ioctl(fd, FBIOPAN_DISPLAY, &info.var));
        EXPECT_EQ(1, vp_fb_pan_count("/dev/fb0"));
        EXPECT_EQ(unsigned(c.screen.yoffset), AskScreen(fd).var.yoffset);
        close(fd);
    }

    const vp_screen refused[] = {
        {0, 0, 0, 0, 32, 0},                 // no pixels
        {64, 32, 64, 32, 32, 0, VP_RGB565},  // a depth the layout does not have
        {64, 32, 64, 32, 32, 0, 99},         // no such layout
        {64, 32, 64, 32, 32, 0, 0, 64, 0},   // the page starts outside the memory
    };
    for (const vp_screen& screen : refused) EXPECT_EQ(-1, vp_fb_add("/dev/fb3", &screen));
    EXPECT_EQ(-1, vp_fb_add("/tmp/fb", &cases[0].screen));  // not a virtual path
    EXPECT_EQ(-1, vp_fb_add("/dev/fb4", nullptr));
}

TEST_F(Platform, InjectedFailuresReachTheCallerWithTheDriversErrno) {
    vp_screen screen = {64, 32, 64, 32, 32, 0};
    ASSERT_EQ(0, vp_fb_add("/dev/fb0", &screen));
    for (int failure : {VP_FAIL_OPEN, VP_FAIL_OPEN_ACCESS}) {
        vp_fb_fail("/dev/fb0", failure);
        errno = 0;
        EXPECT_EQ(-1, open("/dev/fb0", O_RDWR));
        EXPECT_EQ(failure == VP_FAIL_OPEN ? ENOENT : EACCES, errno);
        EXPECT_EQ(nullptr, fopen("/dev/fb0", "r"));
    }

    vp_fb_fail("/dev/fb0", VP_FAIL_VSCREENINFO | VP_FAIL_MMAP);
    const int fd = open("/dev/fb0", O_RDWR);
    ASSERT_GE(fd, 0);
    errno = 0;
    ScreenInfo info = AskScreen(fd);
    EXPECT_EQ(-1, info.ioctls[0]);
    EXPECT_EQ(EINVAL, errno);
    EXPECT_EQ(0, info.ioctls[1]);
    EXPECT_EQ(MAP_FAILED, mmap(nullptr, 64 * 32 * 4, PROT_READ, MAP_SHARED, fd, 0));
    EXPECT_EQ(ENOMEM, errno);

    vp_fb_fail("/dev/fb0", VP_FAIL_FSCREENINFO);
    info = AskScreen(fd);
    EXPECT_EQ(0, info.ioctls[0]);
    EXPECT_EQ(-1, info.ioctls[1]);
    void* mapped = mmap(nullptr, 64 * 32 * 4, PROT_READ, MAP_SHARED, fd, 0);
    EXPECT_NE(MAP_FAILED, mapped);
    munmap(mapped, 64 * 32 * 4);
    close(fd);
    EXPECT_EQ(-1, vp_fb_fail("/dev/fb9", VP_FAIL_OPEN));
}

TEST_F(Platform, WhatIsNotOursPassesThroughWithItsOwnErrno) {
    errno = 0;
    EXPECT_EQ(-1, open("/nonexistent/file", O_RDONLY));
    EXPECT_EQ(ENOENT, errno);
    EXPECT_EQ(-1, close(-1));
    EXPECT_EQ(EBADF, errno);
    const int null = open("/dev/null", O_RDWR);
    fb_var_screeninfo var;
    EXPECT_EQ(-1, ioctl(null, FBIOGET_VSCREENINFO, &var));
    EXPECT_EQ(ENOTTY, errno);
    close(null);
    struct stat status;
    EXPECT_EQ(0, stat("/proc/self", &status));

    // Missing virtual paths are missing, whatever the host has there.
    EXPECT_EQ(-1, open("/dev/fb0", O_RDWR));
    EXPECT_EQ(ENOENT, errno);
    EXPECT_EQ(-1, stat("/dev/input", &status));
    EXPECT_EQ(-1, access(kFont, R_OK));

    // Our bookkeeping leaves the caller's errno alone.
    vp_screen screen = {8, 8, 8, 8, 32, 0};
    vp_fb_add("/dev/fb0", &screen);
    errno = EINTR;
    const int fd = open("/dev/fb0", O_RDWR);
    EXPECT_EQ(0, AskScreen(fd).ioctls[0]);
    close(fd);
    EXPECT_EQ(EINTR, errno);
}

TEST_F(Platform, ADescriptorNumberReusedBehindOurBackIsNotTheDevice) {
    vp_screen screen = {8, 8, 8, 8, 32, 0};
    vp_fb_add("/dev/fb0", &screen);
    const int fd = open("/dev/fb0", O_RDWR);
    syscall(SYS_close, fd);  // as close_range or an exec would
    ASSERT_EQ(fd, open("/dev/null", O_RDWR));
    fb_var_screeninfo var;
    EXPECT_EQ(-1, ioctl(fd, FBIOGET_VSCREENINFO, &var));
    EXPECT_EQ(ENOTTY, errno);
    close(fd);
    EXPECT_EQ(0, vp_fb_close_count("/dev/fb0"));
}

TEST_F(Platform, VirtualFilesReadLikeRealOnesAndDirectoriesMapOntoHostOnes) {
    ASSERT_EQ(0, vp_file_add(kFont, "font", 4));
    char bytes[8] = {};
    const int fd = open(kFont, O_RDONLY);
    EXPECT_EQ(4, read(fd, bytes, sizeof(bytes)));
    close(fd);
    EXPECT_STREQ("font", bytes);
    struct stat status;
    ASSERT_EQ(0, stat(kFont, &status));
    EXPECT_EQ(4, status.st_size);
    EXPECT_EQ(0, lstat(kFont, &status));
    EXPECT_EQ("font", ReadAll(kFont));
    ASSERT_EQ(0, vp_file_remove(kFont));
    EXPECT_EQ(-1, access(kFont, F_OK));

    char dir[] = "/tmp/vantor-platform-test-XXXXXX";
    ASSERT_NE(nullptr, mkdtemp(dir));
    const std::string bold = std::string(dir) + "/lb.tf";
    std::ofstream(bold) << "bold";
    ASSERT_EQ(0, vp_dir_map("/usr/share/fonts/vantor/", dir));
    EXPECT_EQ("bold", ReadAll("/usr/share/fonts/vantor/lb.tf"));
    EXPECT_EQ(0, stat("/usr/share/fonts/vantor", &status));
    EXPECT_TRUE(S_ISDIR(status.st_mode));
    EXPECT_EQ(-1, access(kFont, F_OK));
    vp_reset();
    EXPECT_EQ(-1, access("/usr/share/fonts/vantor/lb.tf", F_OK));
    unlink(bold.c_str());
    rmdir(dir);
}

TEST_F(Platform, ResetAndReplacementLeaveTheProgramsDescriptorsWorking) {
    vp_file_add(kFont, "font", 4);
    const int file = open(kFont, O_RDONLY);
    vp_screen screen = {16, 16, 16, 16, 32, 0};
    vp_fb_add("/dev/fb0", &screen);
    const int fb = open("/dev/fb0", O_RDWR);
    auto* pixels = static_cast<uint32_t*>(
        mmap(nullptr, 16 * 16 * 4, PROT_READ | PROT_WRITE, MAP_SHARED, fb, 0));
    ASSERT_NE(MAP_FAILED, pixels);

    vp_screen larger = {32, 32, 32, 32, 32, 0};
    ASSERT_EQ(0, vp_fb_add("/dev/fb0", &larger));
    EXPECT_EQ(0, vp_fb_open_count("/dev/fb0"));
    pixels[255] = 1;  // the old memory, still mapped
    EXPECT_EQ(0u, vp_fb_pixels("/dev/fb0")[255]);

    vp_reset();
    EXPECT_EQ(nullptr, vp_fb_pixels("/dev/fb0"));
    EXPECT_EQ(-1, access(kFont, F_OK));
    char bytes[4];
    EXPECT_EQ(4, read(file, bytes, sizeof(bytes)));
    pixels[0] = 2;
    EXPECT_EQ(0, munmap(pixels, 16 * 16 * 4));
    EXPECT_EQ(0, close(fb));
    EXPECT_EQ(0, close(file));
}
