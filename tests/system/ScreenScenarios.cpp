// The library's failure messages on a real kernel. Where its pixels land is checked by
// the runner, which compares what the devices hold with the simulator's picture, and a
// copy with its bar runs in the installer.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "vantor.h"

// Run before the vfb module is loaded: there is no /dev/fb0 at all.
TEST(NoFramebuffer, AbsentFb0GivesBothMessages) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_EQ(nullptr, InitFramebuffer("/dev/fb0"));
    std::fflush(stdout);
    EXPECT_EQ("CFramebuffer: can't access frame buffer device at /dev/fb0\n",
              testing::internal::GetCapturedStdout());
    EXPECT_EQ("InitFramebuffer: allocation failed\n", testing::internal::GetCapturedStderr());
    EXPECT_EQ(-2, InitCanvas(0, 0, 800, 480));
}

// Run with vfb reloaded at 8 bits per pixel (a palette): refused with one line naming
// what the driver declared.
TEST(PaletteFramebuffer, EightBitsPerPixelIsRefused) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(nullptr, InitFramebuffer("/dev/fb0"));
    std::fflush(stdout);
    const std::string reason = testing::internal::GetCapturedStdout();
    EXPECT_EQ(0u, reason.find("CFramebuffer: unsupported pixel layout on /dev/fb0: 8 bits"))
        << reason;
    EXPECT_EQ(reason.find('\n'), reason.size() - 1) << reason;  // one line
}
