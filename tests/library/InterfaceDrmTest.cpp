// SPDX-License-Identifier: MIT
// A DRM card in place of the framebuffer device: the same pictures, the driver told
// once per visible change, clear refusals, and the card left as it was found.
#include <drm_mode.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "InterfaceFixture.h"
#include "TestSupport.h"
#include "vantor/Context.h"
#include "vantor/Framebuffer.h"
#include "vantor_platform.h"

namespace {

const char* const kCard = "/dev/dri/card0";

vp_drm_state CardState() {
    vp_drm_state state;
    EXPECT_EQ(0, vp_drm_read_state(kCard, &state));
    return state;
}

// The visible rows, without any padding at their ends.
std::vector<uint8_t> Rows(const void* memory, size_t pitch, int width, int height, int bpp) {
    std::vector<uint8_t> rows;
    const uint8_t* bytes = static_cast<const uint8_t*>(memory);
    for (int y = 0; y < height; ++y)
        rows.insert(rows.end(), bytes + y * pitch, bytes + y * pitch + width * bpp / 8);
    return rows;
}

// Something of every kind of transfer: a canvas with text, a progress window over it
// and a dialog taken away again.
void Draw() {
    InitCanvas(10, 20, 200, 120);
    WriteTextWithBackground(4, 4, "Slot A", 0xFFD000, 0x203040, 1);
    WriteText(4, 40, "ready", 0x40FF40, 0);
    Update();
    InitProgress(40, 100, 250, 60);
    ShowProgress("Writing", 1, 37.5f);
    InitDialog(150, 10, 120, 80);
    HideDialog();
}

}  // namespace

class Drm : public Interface {
  protected:
    void AddCard(int flags = 0, int type = DRM_MODE_CONNECTOR_eDP, int width = kWidth) {
        const vp_drm_card card = {width, kHeight, type, flags};
        ASSERT_EQ(0, vp_drm_add(kCard, &card));
    }
};

// Whatever device is behind it, a drawing leaves the same pixels, in both the 32-bit
// and the 16-bit layout a card may scan out, and where the driver has no dirty hook.
// At this width the card pads its rows.
TEST_F(Drm, SamePictureAsOnFbdev) {
    const int width = 300;
    const struct {
        int flags, bpp, layout;
    } cases[] = {
        {0, 32, VP_XRGB8888}, {VP_DRM_ONLY_16, 16, VP_RGB565}, {VP_DRM_NO_DIRTY, 32, VP_XRGB8888}};
    for (const auto& c : cases) {
        const vp_screen screen = {width, kHeight, width, kHeight, c.bpp, 0, c.layout};
        ASSERT_EQ(0, vp_fb_add("/dev/fb0", &screen));
        ASSERT_NE(nullptr, InitFramebuffer("/dev/fb0"));
        Draw();
        const auto fbdev = Rows(vp_fb_pixels("/dev/fb0"), width * c.bpp / 8, width, kHeight, c.bpp);
        AddCard(c.flags, DRM_MODE_CONNECTOR_eDP, width);
        ASSERT_NE(nullptr, InitFramebuffer(kCard));
        Draw();
        const vp_drm_state state = CardState();
        EXPECT_EQ(c.bpp, state.bits_per_pixel);
        EXPECT_TRUE(fbdev == Rows(vp_drm_pixels(kCard), size_t(state.pitch), width, kHeight, c.bpp))
            << c.bpp << " bits";
    }
}

// The connected display is found, a built-in panel before an external screen, in its
// preferred mode (the card lists a smaller one first); the host sees that size.
TEST_F(Drm, ChoosesTheBuiltInPanelInItsPreferredMode) {
    const struct {
        int flags, type, width, height;
    } cases[] = {
        {0, DRM_MODE_CONNECTOR_DSI, kWidth, kHeight},
        {VP_DRM_EXTERNAL, DRM_MODE_CONNECTOR_eDP, kWidth, kHeight},
        {VP_DRM_EXTERNAL, DRM_MODE_CONNECTOR_VGA, 1024, 768},
    };
    for (const auto& c : cases) {
        AddCard(c.flags, c.type);
        ASSERT_NE(nullptr, InitFramebuffer(kCard));
        int width = 0, height = 0;
        EXPECT_EQ(0, getScreenSize(&width, &height));
        EXPECT_EQ(c.width, width);
        EXPECT_EQ(c.height, height);
        EXPECT_EQ(unsigned(c.width), Vantor::pContext->pFramebuffer->varInfo.xres);
        EXPECT_EQ(unsigned(c.height), Vantor::pContext->pFramebuffer->varInfo.yres);
    }
}

// Each transfer that changes the screen tells the driver once, with the rectangle it
// changed; one that changes nothing on the screen does not.
TEST_F(Drm, TellsTheDriverOncePerVisibleChange) {
    AddCard();
    ASSERT_NE(nullptr, InitFramebuffer(kCard));
    const struct {
        std::function<void()> call;
        int dirties;
        int rect[4];
    } steps[] = {
        {[] { InitCanvas(300, 200, 50, 60); }, 0, {}},
        {[] { Update(); }, 1, {300, 200, 20, 40}},
        {[] { Restore(); }, 1, {300, 200, 20, 40}},
        {[] { InitCanvas(kWidth + 5, 0, 10, 10); }, 0, {}},
        {[] { Update(); }, 0, {}},
    };
    for (const auto& step : steps) {
        const int before = CardState().dirty_count;
        step.call();
        const vp_drm_state after = CardState();
        EXPECT_EQ(step.dirties, after.dirty_count - before);
        if (step.dirties > 0) {
            EXPECT_EQ(0, std::memcmp(step.rect, after.last_dirty, sizeof(step.rect)));
        }
    }
}

// A card the library cannot use is refused with one line that says what is there, and
// nothing is left behind on it.
TEST_F(Drm, RefusesUnusableCardsLeavingNothingBehind) {
    const std::string unusable = "InitFramebuffer: allocation failed\n";
    const std::string where = " on /dev/dri/card0 (driver vantor-drm)";
    const struct {
        int flags;
        bool unplugged, otherOpener;
        std::string lines;
    } cases[] = {
        {VP_DRM_NO_DUMB, false, false, "CFramebuffer: no dumb buffers" + where + "\n" + unusable},
        {0, true, false,
         "CFramebuffer: no connected display" + where + ": eDP-1 disconnected\n" + unusable},
        {0, false, true,
         "CFramebuffer: another program owns the display" + where + "\n" + unusable},
    };
    for (const auto& c : cases) {
        AddCard(c.flags);
        if (c.unplugged) vp_drm_connect(kCard, 0);
        const int holder = c.otherOpener ? open(kCard, O_RDWR | O_CLOEXEC) : -1;
        const int descriptors = VantorTest::OpenDescriptors();
        EXPECT_EQ(c.lines, OutputOf([] { EXPECT_EQ(nullptr, InitFramebuffer(kCard)); }));
        const vp_drm_state state = CardState();
        EXPECT_TRUE(state.console_shown);
        EXPECT_EQ(0, state.buffers);
        EXPECT_EQ(0, state.framebuffers);
        EXPECT_EQ(descriptors, VantorTest::OpenDescriptors());
        if (holder >= 0) close(holder);
    }
}

// Whether the framebuffer is replaced or the library unloaded, the console's mode
// returns, the buffer is freed and the card is no longer held.
TEST_F(Drm, GivesTheCardBackAsItWas) {
    const struct {
        const char* name;
        std::function<void()> release;
    } cases[] = {
        {"another InitFramebuffer", [] { InitFramebuffer("/dev/fb0"); }},
        {"unload",
         [] {
             Vantor::VantorCleanup();
             Vantor::VantorInit();  // a fresh state, as after loading the library again
         }},
    };
    for (const auto& c : cases) {
        AddCard();
        ASSERT_NE(nullptr, InitFramebuffer(kCard));
        Draw();
        EXPECT_FALSE(CardState().console_shown);
        c.release();
        const vp_drm_state state = CardState();
        EXPECT_TRUE(state.console_shown) << c.name;
        EXPECT_EQ(0, state.buffers) << c.name;
        EXPECT_EQ(0, state.framebuffers) << c.name;
        EXPECT_FALSE(state.master_held) << c.name;  // the card's descriptor is closed
    }
}

// A request interrupted by a signal is made again, wherever in the start-up it happens.
TEST_F(Drm, StartsDespiteAnInterruptedRequest) {
    for (int nth = 1; nth <= 20; ++nth) {
        AddCard();
        vp_fail_call("ioctl", EINTR, nth);
        EXPECT_NE(nullptr, InitFramebuffer(kCard)) << "request " << nth;
        EXPECT_FALSE(CardState().console_shown) << "request " << nth;
        InitFramebuffer(nullptr);  // gives the card back
    }
}

// A daemon started with its standard input closed is given descriptor 0 for its display:
// that display must still be told of each change and be closed at the end like any other.
TEST_F(Drm, ADisplayOnDescriptorZeroIsShownAndClosed) {
    AddCard();
    const struct {
        const char* path;
        std::function<int()> shown;  // how often the driver has been told so far
    } displays[] = {
        {"/dev/fb0", [] { return vp_fb_pan_count("/dev/fb0"); }},
        {kCard, [] { return CardState().dirty_count; }},
    };
    const int input = dup(STDIN_FILENO);
    for (const auto& d : displays) {
        close(STDIN_FILENO);
        ASSERT_NE(nullptr, InitFramebuffer(d.path)) << d.path;
        ASSERT_EQ(0, Vantor::pContext->pFramebuffer->fd) << d.path;
        const int before = d.shown();
        InitCanvas(0, 0, 40, 30);
        Update();
        EXPECT_EQ(before + 1, d.shown()) << d.path;
        Vantor::VantorCleanup();
        EXPECT_EQ(-1, fcntl(STDIN_FILENO, F_GETFD)) << d.path;
        Vantor::VantorInit();
    }
    dup2(input, STDIN_FILENO);
    close(input);
}
