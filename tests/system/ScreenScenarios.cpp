// The library on real framebuffer drivers (vfb, and the DRM layer's emulation of a
// framebuffer for the bochs display): what it maps, where its pixels land as
// another reader of the device sees them, its failure messages, and a copy whose bar
// moves on the real screen.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fb.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include "SystemSupport.h"
#include "vantor.h"
#include "vantor/Context.h"
#include "vantor/Framebuffer.h"

using Vantor::pContext;

namespace {

const int kWidth = 800, kHeight = 480;

uint32_t WordAt(const std::vector<uint32_t>& screen, int x, int y) {
    return screen.at(size_t(y) * kWidth + size_t(x));
}

// A colour as a 32-bit driver with 8-bit channels stores it, by the driver's declaration
// (vfb puts red in the low byte, bochs in the third).
uint32_t AsStored(uint32_t colour) {
    fb_var_screeninfo var = {};
    const int fd = open(TheFramebuffer(), O_RDONLY);
    ioctl(fd, FBIOGET_VSCREENINFO, &var);
    close(fd);
    return ((colour >> 16) & 0xFF) << var.red.offset | ((colour >> 8) & 0xFF) << var.green.offset |
           (colour & 0xFF) << var.blue.offset;
}

}  // namespace

// Run before the vfb module is loaded: there is no /dev/fb0 at all.
TEST(NoFramebuffer, AbsentFb0GivesBothMessages) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_EQ(nullptr, InitFramebuffer("/dev/fb0"));
    std::fflush(stdout);
    EXPECT_EQ("CFramebuffer: can't access frame buffer device at /dev/fb0\n",
              testing::internal::GetCapturedStdout());
    EXPECT_EQ("InitFramebuffer: allocation failed\n", testing::internal::GetCapturedStderr());
    EXPECT_EQ(-2, InitCanvas(0, 0, kWidth, kHeight));
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

// The mapping must be the device's own memory, rows of xres_virtual words in the
// driver's declared layout: a background colour written at (123, 45) is read back there
// by another reader.
TEST(RealFramebuffer, PixelsLandWhereAnotherReaderSeesThem) {
    ASSERT_NE(nullptr, InitFramebuffer(TheFramebuffer()));
    ASSERT_EQ(0, InitCanvas(0, 0, kWidth, kHeight));
    ASSERT_EQ(0, WriteTextWithBackground(123, 45, "  ", 0xFFFFFF, 0x123456, 0));
    ASSERT_EQ(0, Update());
    const std::vector<uint32_t> screen = ReadScreen(TheFramebuffer(), kWidth * kHeight);
    ASSERT_FALSE(screen.empty());
    const uint32_t stored = AsStored(0x123456);
    EXPECT_EQ(stored, WordAt(screen, 123, 45));
    EXPECT_EQ(stored, WordAt(screen, 124, 46));
    EXPECT_NE(stored, WordAt(screen, 122, 45));
    EXPECT_NE(stored, WordAt(screen, 123, 44));
    EXPECT_EQ(0, std::memcmp(screen.data(), pContext->pFramebuffer->pScreen, screen.size() * 4));
}

TEST(RealFramebuffer, CopyMovesTheBarOnTheRealScreen) {
    ASSERT_NE(nullptr, InitFramebuffer(TheFramebuffer()));
    const std::string source = "/tmp/vantor-system-source", target = "/tmp/vantor-system-target";
    std::ofstream(source, std::ios::binary) << std::string(3 << 20, 'x');
    ASSERT_EQ(0, InitProgress(100, 200, 600, 60));
    ASSERT_EQ(0, ShowProgress("Copying", eAlignLeft, 0.0f));
    const uint32_t before = WordAt(ReadScreen(TheFramebuffer(), kWidth * kHeight), 690, 247);
    ASSERT_EQ(0, CopyFileWithProgress(source.c_str(), target.c_str(), nullptr, 100.0f));
    // The bar's right end is filled once the whole share is copied.
    EXPECT_NE(0xFFFFFFu, before);
    EXPECT_EQ(0xFFFFFFu, WordAt(ReadScreen(TheFramebuffer(), kWidth * kHeight), 690, 247));
    std::ifstream copy(target, std::ios::binary | std::ios::ate);
    EXPECT_EQ(std::streamoff(3 << 20), std::streamoff(copy.tellg()));
    EXPECT_EQ(0, HideProgress());
    std::remove(source.c_str());
    std::remove(target.c_str());
}
