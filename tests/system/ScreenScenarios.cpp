// The library on a real framebuffer driver (vfb): its failure messages, and a copy whose
// bar moves on the real screen. Where its pixels land is checked by the runner, which
// compares the devices' memory with the simulator's picture.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "SystemSupport.h"
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

// The bar's right end (690, 247) turns white once the whole share is copied.
TEST(RealFramebuffer, CopyMovesTheBarOnTheRealScreen) {
    ASSERT_NE(nullptr, InitFramebuffer("/dev/fb0"));
    const std::string source = "/tmp/vantor-system-source", target = "/tmp/vantor-system-target";
    std::ofstream(source, std::ios::binary) << std::string(3 << 20, 'x');
    ASSERT_EQ(0, InitProgress(100, 200, 600, 60));
    ASSERT_EQ(0, ShowProgress("Copying", eAlignLeft, 0.0f));
    const size_t barEnd = 247 * 800 + 690;
    EXPECT_NE(0xFFFFFFu, ReadScreen("/dev/fb0", 800 * 480).at(barEnd));
    ASSERT_EQ(0, CopyFileWithProgress(source.c_str(), target.c_str(), nullptr, 100.0f));
    EXPECT_EQ(0xFFFFFFu, ReadScreen("/dev/fb0", 800 * 480).at(barEnd));
    std::ifstream copy(target, std::ios::binary | std::ios::ate);
    EXPECT_EQ(std::streamoff(3 << 20), std::streamoff(copy.tellg()));
    std::remove(source.c_str());
    std::remove(target.c_str());
}
