// SPDX-License-Identifier: MIT
// getMenuSize answers the footprint ShowMenu then paints: on a screen of noise, the
// pixels the menu changes while it waits for a key form a box of exactly that size.
#include <algorithm>
#include <cstdio>

#include "InterfaceFixture.h"
#include "vantor_platform.h"

namespace {

struct Footprint {
    std::vector<uint32_t> before;
    int left = 1 << 30, top = 1 << 30, right = -1, bottom = -1;
};

// Called at each wait for a key; only the first sees the menu as first painted.
void TakeFootprint(int, void* user) {
    Footprint& f = *static_cast<Footprint*>(user);
    if (f.right >= 0) return;
    const uint32_t* now = vp_fb_pixels("/dev/fb0");
    for (int k = 0; k < int(f.before.size()); ++k) {
        if (now[k] == f.before[k]) continue;
        const int x = k % 320, y = k / 320;  // the fixture's screen
        f.left = std::min(f.left, x), f.right = std::max(f.right, x);
        f.top = std::min(f.top, y), f.bottom = std::max(f.bottom, y);
    }
}

}  // namespace

TEST_F(Interface, MenuSizeIsWhatShowMenuPaints) {
    const char* entries[] = {"One", "Two words", "3", nullptr};
    const char* accents[] = {"\xC3\xA9t\xC3\xA9", "x", nullptr};  // 3 characters or 5 bytes
    const char* none[] = {nullptr};
    int width = -1, height = -1;
    EXPECT_EQ(-2, getMenuSize(entries, eMenuVertical, &width, &height));  // no framebuffer
    EXPECT_EQ(0, width + height);
    InitFramebuffer("/dev/fb0");
    AddKeypad();
    InitKeypad();
    EXPECT_EQ(-1, getMenuSize(nullptr, eMenuVertical, &width, &height));
    EXPECT_EQ(-1, getMenuSize(entries, eMenuVertical, &width, nullptr));
    EXPECT_EQ(-1, getMenuSize(none, eMenuVertical, &width, &height));

    uint32_t* screen = vp_fb_pixels("/dev/fb0");
    for (int k = 0; k < kWidth * kHeight; ++k)
        screen[k] = ((uint32_t(k) * 2654435761u >> 8) & 0x7F7F7F) | 0x010101;  // never 0 or white
    static char names[40][12];
    std::vector<const char*> many;
    for (int n = 0; n < 40; ++n) {
        std::snprintf(names[n], sizeof names[n], "Entry %d", n);
        many.push_back(names[n]);
    }
    many.push_back(nullptr);
    struct {
        const char** entries;
        int orientation, encoding, boxHeight;  // boxHeight 0: InitMenu
    } cases[] = {
        {entries, eMenuVertical, VANTOR_TEXT_BYTES, 0},
        {entries, eMenuHorizontal, VANTOR_TEXT_BYTES, 0},
        {accents, eMenuVertical, VANTOR_TEXT_UTF8, 0},
        {accents, eMenuVertical, VANTOR_TEXT_BYTES, 0},
        {many.data(), eMenuVertical, VANTOR_TEXT_BYTES, 0},  // these three scroll
        {many.data(), eMenuHorizontal, VANTOR_TEXT_BYTES, 0},
        {many.data(), eMenuVertical, VANTOR_TEXT_BYTES, 100},
    };
    for (const auto& c : cases) {
        setTextEncoding(c.encoding);
        ASSERT_EQ(0, c.boxHeight > 0 ? InitMenuBox(10, 20, kWidth, c.boxHeight) : InitMenu(10, 20));
        ASSERT_EQ(0, getMenuSize(c.entries, c.orientation, &width, &height));
        Footprint painted{Snapshot()};
        vp_set_wait_hook(TakeFootprint, &painted);
        Script({kOk});
        EXPECT_EQ(1, ShowMenu(c.entries, c.orientation, eAlignLeft));
        vp_set_wait_hook(nullptr, nullptr);
        EXPECT_EQ(10, painted.left) << c.entries[0] << " " << c.orientation;
        EXPECT_EQ(20, painted.top) << c.entries[0] << " " << c.orientation;
        EXPECT_EQ(width, painted.right - painted.left + 1) << c.entries[0] << " " << c.orientation;
        EXPECT_EQ(height, painted.bottom - painted.top + 1) << c.entries[0] << " " << c.orientation;
    }
}
