// SPDX-License-Identifier: MIT
// The state record, the framebuffer device and the screen calls, seen through the C
// interface on a virtual framebuffer.
#include <cerrno>
#include <climits>
#include <cstring>

#include "InterfaceFixture.h"
#include "TestSupport.h"
#include "vantor/Context.h"
#include "vantor_platform.h"

using Vantor::pContext;

// Before InitFramebuffer every call that needs a screen refuses instead of crashing.
TEST_F(Interface, FreshStateRefusesScreenCalls) {
    EXPECT_EQ(-2, InitCanvas(0, 0, 10, 10));
    EXPECT_EQ(-2, Update());
    EXPECT_EQ(-2, Restore());
    EXPECT_EQ(2, Clear());
    EXPECT_EQ(0, WriteText(0, 0, "A", 0xFFFFFF, 0));
    EXPECT_EQ(-2, getFontSize(0, nullptr, nullptr));
    EXPECT_EQ(-2, InitMenu(0, 0));
    EXPECT_EQ(-2, InitDialog(0, 0, 10, 10));
    EXPECT_EQ(-2, InitProgress(0, 0, 10, 10));
    EXPECT_EQ(-2, HideDialog());
    EXPECT_EQ(-2, ShowProgress("x", 1, 5.0f));
}

// A start-up that fails says why and leaves no usable state and nothing open: the
// device, its mapping and the font files are all given back. Screens the library cannot
// draw on are refused with one line naming what the driver declared.
TEST_F(Interface, StartUpFailuresLeaveNothingOpen) {
    const std::string fonts = "InitFramebuffer: cannot load font /usr/share/fonts/vantor/";
    const std::string unusable = "InitFramebuffer: allocation failed\n";
    const vp_screen palette = {64, 32, 64, 32, 8, 0, VP_PALETTE8};
    const vp_screen padded = {64, 32, 64, 32, 32, 200};
    const struct {
        const char* device;
        const char* call;  // made to fail
        int error, nth, unmaps;
        std::string lines;                  // standard output, then the error stream
        const vp_screen* screen = nullptr;  // the device's, where it is not the usual one
    } cases[] = {
        {nullptr, nullptr, 0, 0, 0, unusable},
        {"/dev/fb7", nullptr, 0, 0, 0,
         "CFramebuffer: can't access frame buffer device at /dev/fb7\n" + unusable},
        {"/dev/fb0", "ioctl", EIO, 1, 0,
         "CFramebuffer: cannot access variable screen info from /dev/fb0: -1\n" + unusable},
        {"/dev/fb0", "ioctl", EIO, 2, 0,
         "CFramebuffer: cannot access fixed screen info from /dev/fb0: -1\n" + unusable},
        {"/dev/fb0", "mmap", ENOMEM, 1, 0,
         "CFramebuffer: cannot map frame buffer /dev/fb0 to memory\n" + unusable},
        {"/dev/fb0", "open", EMFILE, 3, 1, fonts + "lb.tf: Cannot open font file\n"},
        {"/dev/fb0", "read", EIO, 1, 1, fonts + "lr.tf: Cannot read font\n"},
        {"/dev/fb0", nullptr, 0, 0, 0,
         "CFramebuffer: unsupported pixel layout on /dev/fb0: 8 bits per pixel, red 0/8, green "
         "0/8, blue 0/8 (offset/length)\n" +
             unusable,
         &palette},
        {"/dev/fb0", nullptr, 0, 0, 0,
         "CFramebuffer: unsupported screen geometry on /dev/fb0: 64x32 at 0,0 in 64x32, 200 "
         "bytes per line, 6400 bytes of memory\n" +
             unusable,
         &padded},
    };
    for (const auto& c : cases) {
        if (c.screen != nullptr) vp_fb_add("/dev/fb0", c.screen);
        const int descriptors = VantorTest::OpenDescriptors();
        const int unmaps = vp_fb_unmap_count("/dev/fb0");
        EXPECT_EQ(c.lines, OutputOf([&] {
                      if (c.call != nullptr) vp_fail_call(c.call, c.error, c.nth);
                      EXPECT_EQ(nullptr, InitFramebuffer(c.device));
                  }));
        EXPECT_FALSE(Vantor::IsContextValid(pContext));
        EXPECT_EQ(-2, InitCanvas(0, 0, 10, 10));
        EXPECT_EQ(c.unmaps, vp_fb_unmap_count("/dev/fb0") - unmaps) << c.call << c.nth;
        EXPECT_EQ(descriptors, VantorTest::OpenDescriptors()) << c.call << c.nth;
    }
}

// The record is what InitFramebuffer gives; a second one drops the widgets drawn with
// the old framebuffer's fonts and keeps one descriptor open.
TEST_F(Interface, SuccessReturnsTheRecordAndASecondInitReplacesEverything) {
    void* record = InitFramebuffer("/dev/fb0");
    EXPECT_EQ(static_cast<void*>(pContext), record);
    ASSERT_EQ(0, InitCanvas(0, 0, 50, 50));
    ASSERT_EQ(0, InitProgress(0, 0, 100, 40));

    EXPECT_EQ(record, InitFramebuffer("/dev/fb0"));
    EXPECT_EQ(-2, Update());
    EXPECT_EQ(-2, ShowProgress("x", eAlignLeft, 5.0f));
    EXPECT_EQ(1, vp_fb_open_count("/dev/fb0"));
}

TEST_F(Interface, CanvasSizesAndMissingCanvasAreRefused) {
    InitFramebuffer("/dev/fb0");
    EXPECT_EQ(-2, Update());
    EXPECT_EQ(-2, Clear());
    EXPECT_EQ(-2, InitCanvas(0, 0, 0, 10));
    // Four screens' worth (here 640x480 on 320x240) is the most a widget may cover.
    for (auto init : {InitCanvas, InitDialog, InitProgress}) {
        EXPECT_EQ(-2, init(0, 0, 641, 480));
        EXPECT_EQ(0, init(INT_MIN, INT_MAX, 640, 480));
    }
    AddKeypad();
    ASSERT_EQ(0, InitKeypad());
    InitMenu(0, 0);
    const std::string entry(200000, 'm');
    const char* entries[] = {"short", entry.c_str(), nullptr};
    EXPECT_EQ(-2, ShowMenu(entries, 0, 0));
}

TEST_F(Interface, FontSizesAndColourConversion) {
    InitFramebuffer("/dev/fb0");
    int width = 0, height = 0;
    EXPECT_EQ(0, getFontSize(1, &width, nullptr));
    EXPECT_EQ(8, width);
    EXPECT_EQ(0, getFontSize(0, &width, &height));
    EXPECT_EQ(16, height);
    EXPECT_EQ(-2, getFontSize(2, &width, &height));

    const unsigned char rgb[] = {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77};
    unsigned char out[12];
    std::memset(out, 0xEE, sizeof(out));
    EXPECT_EQ(8, RGB_to_RGBA(rgb, out, 6));
    const unsigned char expected[] = {0x33, 0x22, 0x11, 0x00, 0x66, 0x55, 0x44, 0x00, 0xEE};
    EXPECT_EQ(0, std::memcmp(expected, out, sizeof(expected)));
    EXPECT_EQ(5, RGB_to_RGBA(rgb, out, 4));
    EXPECT_EQ(-2, RGB_to_RGBA(rgb, out, 0));
    EXPECT_EQ(-2, RGB_to_RGBA(nullptr, out, 3));
}
