// SPDX-License-Identifier: MIT
// Framebuffers and everything that is not ours, through the calls the library makes.
// How the library draws on each layout is the interface tests' part; here what a
// driver would answer, and that nothing else changes.
#include <errno.h>
#include <fcntl.h>
#include <linux/fb.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "PlatformTest.h"

TEST_F(Platform, InjectedFailuresReachTheCallerWithTheDriversErrno) {
    vp_screen screen = {64, 32, 64, 32, 32, 0};
    ASSERT_EQ(0, vp_fb_add("/dev/fb0", &screen));
    vp_fb_fail("/dev/fb0", VP_FAIL_OPEN_ACCESS);
    EXPECT_EQ(-1, open("/dev/fb0", O_RDWR));
    EXPECT_EQ(EACCES, errno);

    vp_fb_fail("/dev/fb0", VP_FAIL_FSCREENINFO | VP_FAIL_MMAP);
    const int fd = open("/dev/fb0", O_RDWR);
    fb_fix_screeninfo fix;
    EXPECT_EQ(-1, ioctl(fd, FBIOGET_FSCREENINFO, &fix));
    EXPECT_EQ(EINVAL, errno);
    EXPECT_EQ(MAP_FAILED, mmap(nullptr, 64 * 32 * 4, PROT_READ, MAP_SHARED, fd, 0));
    EXPECT_EQ(ENOMEM, errno);
    close(fd);
}

TEST_F(Platform, WhatIsNotOursPassesThroughWithItsOwnErrno) {
    EXPECT_EQ(-1, close(-1));
    EXPECT_EQ(EBADF, errno);
    const int null = open("/dev/null", O_RDWR);
    fb_var_screeninfo var;
    EXPECT_EQ(-1, ioctl(null, FBIOGET_VSCREENINFO, &var));
    EXPECT_EQ(ENOTTY, errno);
    close(null);

    // Missing virtual paths are missing, whatever the host has there.
    EXPECT_EQ(-1, open("/dev/fb0", O_RDWR));
    EXPECT_EQ(ENOENT, errno);
    struct stat status;
    EXPECT_EQ(-1, stat("/dev/input", &status));

    // Our bookkeeping leaves the caller's errno alone.
    vp_screen screen = {8, 8, 8, 8, 32, 0};
    vp_fb_add("/dev/fb0", &screen);
    errno = EINTR;
    close(open("/dev/fb0", O_RDWR));
    EXPECT_EQ(EINTR, errno);
}
