// SPDX-License-Identifier: MIT
// A turned panel: every rotation in every pixel layout shows the unturned picture
// moved pixel for pixel to where the mounting puts it, and what widgets cover comes
// back byte for byte.
#include <cstring>

#include "InterfaceFixture.h"
#include "vantor_platform.h"

namespace {

const char* const kPanel = "/dev/fb1";
// The picture the host lays out. Neither side is a multiple of the transfers' tiles.
const int kLogicalWidth = 150;
const int kLogicalHeight = 70;

struct Geometry {
    int rotation;
    int width, height;  // the panel's
    int bytes;          // per pixel

    // Where logical (x, y) is shown on the panel, as a mounting turned clockwise puts it.
    int Offset(int x, int y) const {
        int px = x, py = y;
        if (rotation == 90) px = width - 1 - y, py = x;
        if (rotation == 180) px = width - 1 - x, py = height - 1 - y;
        if (rotation == 270) px = y, py = height - 1 - x;
        return (py * width + px) * bytes;
    }
};

// Visits the panel's raw pixels in logical order.
template <typename Visit>
void EachPixel(const Geometry& g, Visit visit) {
    auto* memory = reinterpret_cast<uint8_t*>(vp_fb_pixels(kPanel));
    for (int y = 0; y < kLogicalHeight; ++y) {
        for (int x = 0; x < kLogicalWidth; ++x) visit(memory + g.Offset(x, y), x, y);
    }
}

// The same for every rotation exactly when each logical pixel reached its place.
std::vector<uint32_t> LogicalPicture(const Geometry& g) {
    std::vector<uint32_t> picture;
    EachPixel(g, [&](uint8_t* pixel, int, int) {
        uint32_t raw = 0;
        std::memcpy(&raw, pixel, size_t(g.bytes));
        picture.push_back(raw);
    });
    return picture;
}

// Every logical pixel starts with a value of its own, so that a swapped or shifted pixel
// anywhere shows.
void PaintPattern(const Geometry& g) {
    EachPixel(g, [&](uint8_t* pixel, int x, int y) {
        const uint32_t raw = uint32_t(y * 977 + x * 131 + 7) * 2654435761u;
        std::memcpy(pixel, &raw, size_t(g.bytes));
    });
}

// Pictures along one session: a canvas reaching past the right and bottom edges, a
// progress window over it reaching past the left edge, a menu while it waits, and the
// screen after each thing was taken away again.
std::vector<std::vector<uint32_t>> Session(const Geometry& g) {
    static const Geometry* current;
    static std::vector<std::vector<uint32_t>>* pictures;
    std::vector<std::vector<uint32_t>> seen;
    current = &g;
    pictures = &seen;
    PaintPattern(g);
    const std::vector<uint32_t> before = LogicalPicture(g);
    EXPECT_EQ(0, InitCanvas(20, 30, 140, 50));
    WriteTextWithBackground(0, 0, "Turn", 0xFF0000, 0x00FF00, 1);
    WriteTextWithBackground(124, 33, "end", 0x0000FF, 0xFFFF00, 0);
    Update();
    seen.push_back(LogicalPicture(g));
    const std::vector<uint32_t> withCanvas = seen.back();
    EXPECT_EQ(0, InitProgress(-10, 2, 100, 40));
    ShowProgress("half", eAlignLeft, 50.0f);
    seen.push_back(LogicalPicture(g));
    HideProgress();
    EXPECT_EQ(withCanvas, LogicalPicture(g));
    vp_set_wait_hook([](int, void*) { pictures->push_back(LogicalPicture(*current)); }, nullptr);
    vp_input_script(0, "7, 150");  // next entry, back
    InitMenu(100, 40);
    const char* entries[] = {"one", "two", nullptr};
    EXPECT_EQ(0, ShowMenu(entries, eMenuVertical, eAlignLeft));
    vp_set_wait_hook(nullptr, nullptr);
    EXPECT_EQ(withCanvas, LogicalPicture(g));
    Restore();
    EXPECT_EQ(before, LogicalPicture(g));
    return seen;
}

}  // namespace

TEST_F(Interface, EveryRotationShowsTheSamePictureTurnedAndRestoresExactly) {
    const struct {
        int layout, bytes;
    } layouts[] = {{VP_XRGB8888, 4}, {VP_XBGR8888, 4}, {VP_BGRX8888, 4}, {VP_RGB888, 3},
                   {VP_BGR888, 3},   {VP_RGB565, 2},   {VP_BGR565, 2}};
    AddKeypad();
    for (const auto& layout : layouts) {
        std::vector<std::vector<uint32_t>> unturned;
        for (int rotation : {0, 90, 180, 270}) {
            const bool sideways = rotation % 180 != 0;
            const Geometry g = {rotation, sideways ? kLogicalHeight : kLogicalWidth,
                                sideways ? kLogicalWidth : kLogicalHeight, layout.bytes};
            const vp_screen screen = {g.width, g.height, g.width, g.height, 0, 0, layout.layout};
            ASSERT_EQ(0, vp_fb_add(kPanel, &screen));
            ASSERT_NE(nullptr, InitFramebuffer(kPanel));
            ASSERT_EQ(0, InitKeypad());
            ASSERT_EQ(0, setRotation(rotation));
            int width = 0, height = 0;
            getScreenSize(&width, &height);
            EXPECT_EQ(kLogicalWidth, width);
            EXPECT_EQ(kLogicalHeight, height);
            const auto pictures = Session(g);
            if (rotation == 0) unturned = pictures;
            EXPECT_EQ(unturned, pictures) << "layout " << layout.layout << " at " << rotation;
        }
    }
}

// Refused for a bad angle, without a framebuffer, and once anything is on the screen;
// a new framebuffer starts unturned.
TEST_F(Interface, RotationIsChosenBeforeAnythingIsOnTheScreen) {
    EXPECT_EQ(-2, setRotation(90));
    int (*const makers[])() = {[] { return InitCanvas(0, 0, 8, 8); }, [] { return InitMenu(0, 0); },
                               [] { return InitDialog(0, 0, 8, 8); },
                               [] { return InitProgress(0, 0, 8, 8); }};
    for (auto make : makers) {
        ASSERT_NE(nullptr, InitFramebuffer("/dev/fb0"));
        for (int wrong : {45, 360, -90}) EXPECT_EQ(-1, setRotation(wrong));
        EXPECT_EQ(0, setRotation(90));
        ASSERT_EQ(0, make());
        EXPECT_EQ(-3, setRotation(0));
        int width = 0;
        getScreenSize(&width, nullptr);
        EXPECT_EQ(int(kHeight), width);
    }
    ASSERT_NE(nullptr, InitFramebuffer("/dev/fb0"));
    int width = 0;
    getScreenSize(&width, nullptr);
    EXPECT_EQ(int(kWidth), width);
}

// A DRM card is told the changed rectangle as it lies on the panel.
TEST_F(Interface, TheDeviceIsToldWhereOnThePanelAPictureChanged) {
    const vp_drm_card card = {kWidth, kHeight};
    ASSERT_EQ(0, vp_drm_add("/dev/dri/card0", &card));
    const struct {
        int rotation;
        int rect[4];  // the canvas (10, 20) + (30, 40) on the 320 x 240 panel
    } cases[] = {{0, {10, 20, 30, 40}},
                 {90, {260, 10, 40, 30}},
                 {180, {280, 180, 30, 40}},
                 {270, {20, 200, 40, 30}}};
    for (const auto& c : cases) {
        ASSERT_NE(nullptr, InitFramebuffer("/dev/dri/card0"));
        ASSERT_EQ(0, setRotation(c.rotation));
        InitCanvas(10, 20, 30, 40);
        Update();
        vp_drm_state state;
        ASSERT_EQ(0, vp_drm_read_state("/dev/dri/card0", &state));
        EXPECT_EQ(0, std::memcmp(c.rect, state.last_dirty, sizeof(c.rect))) << c.rotation;
    }
}
