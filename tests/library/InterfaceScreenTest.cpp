// The state record, the framebuffer device and the screen and text calls, seen through
// the C interface on a virtual framebuffer.
#include <cerrno>
#include <climits>
#include <cstring>

#include "InterfaceFixture.h"
#include "TestSupport.h"
#include "vantor/Canvas.h"
#include "vantor/Context.h"
#include "vantor/Framebuffer.h"
#include "vantor/Menu.h"
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

TEST_F(Interface, FramebufferFailuresPrintTheirLinesAndLeaveNoUsableState) {
    EXPECT_EQ("InitFramebuffer: allocation failed\n",
              CaptureStderrOf([] { EXPECT_EQ(nullptr, InitFramebuffer(nullptr)); }));
    ASSERT_NE(nullptr, pContext->pFramebuffer);  // the empty object stays in its slot
    EXPECT_EQ(nullptr, pContext->pFramebuffer->pScreen);

    std::string out = CaptureStdoutOf([] { InitFramebuffer("/dev/fb7"); });
    EXPECT_EQ("CFramebuffer: can't access frame buffer device at /dev/fb7\n", out);
    EXPECT_EQ(-1, pContext->pFramebuffer->fd);
    EXPECT_EQ(-2, InitCanvas(0, 0, 10, 10));
}

TEST_F(Interface, MissingFontIsNamedAndNothingStaysOpen) {
    vp_file_remove("/usr/share/fonts/vantor/lb.tf");
    std::string err = CaptureStderrOf([] { EXPECT_EQ(nullptr, InitFramebuffer("/dev/fb0")); });
    EXPECT_EQ(
        "InitFramebuffer: cannot load font /usr/share/fonts/vantor/lb.tf: Cannot open font "
        "file\n",
        err);
    EXPECT_FALSE(Vantor::IsContextValid(pContext));
    EXPECT_EQ(0, OpenFramebufferDescriptors());
    EXPECT_EQ(1, vp_fb_unmap_count("/dev/fb0"));
}

TEST_F(Interface, SuccessReturnsTheRecordAndASecondInitReplacesEverything) {
    void* record = InitFramebuffer("/dev/fb0");
    EXPECT_EQ(static_cast<void*>(pContext), record);
    ASSERT_EQ(0, InitCanvas(0, 0, 50, 50));
    ASSERT_EQ(0, InitProgress(0, 0, 100, 40));

    EXPECT_EQ(record, InitFramebuffer("/dev/fb0"));
    EXPECT_EQ(nullptr, pContext->pCanvas);  // it drew with the old framebuffer's fonts
    EXPECT_EQ(nullptr, pContext->pProgress);
    EXPECT_EQ(1, OpenFramebufferDescriptors());
}

TEST_F(Interface, CanvasSizesAndMissingCanvasAreRefused) {
    InitFramebuffer("/dev/fb0");
    EXPECT_EQ(-2, Update());
    EXPECT_EQ(-2, Clear());
    EXPECT_EQ(-2, InitCanvas(0, 0, 0, 10));
    // Four screens' worth (here 640x480 on 320x240) is the most a widget may cover.
    for (auto init : {InitCanvas, InitDialog, InitProgress}) {
        EXPECT_EQ(-2, init(0, 0, 8192, 8192));
        EXPECT_EQ(-2, init(0, 0, 641, 480));
        EXPECT_EQ(0, init(INT_MIN, INT_MAX, 640, 480));
    }
    AddKeypad();
    ASSERT_EQ(0, InitKeypad());
    InitMenu(0, 0);
    const std::string entry(200000, 'm');
    const char* entries[] = {"short", entry.c_str(), nullptr};
    EXPECT_EQ(-2, ShowMenu(entries, 0, 0));
    EXPECT_TRUE(pContext->pMenu->objects.empty());
    EXPECT_EQ(0, InitCanvas(0, 0, 10, 10));
    EXPECT_EQ(0, InitCanvas(5, 5, 10, 10));  // replaces (and releases) the first
    EXPECT_EQ(5, pContext->pCanvas->frame.topLeft.x);
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

// A device or font file that fails part way through start-up leaves no usable state and
// nothing open: the framebuffer, its mapping and the font files are all given back.
TEST_F(Interface, StartUpFaultsLeaveNothingOpen) {
    const struct {
        const char* call;
        int error, nth;
    } faults[] = {{"open", EIO, 1},    {"ioctl", EIO, 1},   {"ioctl", EIO, 2},
                  {"mmap", ENOMEM, 1}, {"open", EMFILE, 3}, {"read", EIO, 1}};
    for (const auto& fault : faults) {
        const int before = VantorTest::OpenDescriptors();
        CaptureStdoutOf([&] {
            CaptureStderrOf([&] {
                vp_fail_call(fault.call, fault.error, fault.nth);
                EXPECT_EQ(nullptr, InitFramebuffer("/dev/fb0")) << fault.call << fault.nth;
            });
        });
        EXPECT_FALSE(Vantor::IsContextValid(pContext));
        EXPECT_EQ(0, OpenFramebufferDescriptors());
        EXPECT_EQ(before, VantorTest::OpenDescriptors()) << fault.call << fault.nth;
    }
}
