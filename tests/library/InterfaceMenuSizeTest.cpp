// SPDX-License-Identifier: MIT
// getMenuSize answers the footprint ShowMenu then paints: on a screen of noise, the
// pixels the menu changes while it waits for a key form a box of exactly that size.
#include <algorithm>
#include <climits>
#include <string>

#include "InterfaceFixture.h"
#include "vantor_platform.h"

namespace {

const int kW = 320, kH = 240;

struct Footprint {
    const uint32_t* before;
    bool taken = false;
    int left = INT_MAX, top = INT_MAX, right = -1, bottom = -1;
};

// Called at each wait for a key; the first one sees the menu as first painted.
void TakeFootprint(int, void* user) {
    Footprint& f = *static_cast<Footprint*>(user);
    if (f.taken) return;
    f.taken = true;
    const uint32_t* now = vp_fb_pixels("/dev/fb0");
    for (int k = 0; k < kW * kH; ++k) {
        if (now[k] == f.before[k]) continue;
        f.left = std::min(f.left, k % kW), f.right = std::max(f.right, k % kW);
        f.top = std::min(f.top, k / kW), f.bottom = std::max(f.bottom, k / kW);
    }
}

}  // namespace

TEST_F(Interface, MenuSizeIsWhatShowMenuPaints) {
    const char* entries[] = {"One", "Two words", "3", nullptr};
    int width = -1, height = -1;
    EXPECT_EQ(-2, getMenuSize(entries, eMenuVertical, &width, &height));  // no framebuffer
    EXPECT_EQ(0, width + height);
    InitFramebuffer("/dev/fb0");
    AddKeypad();
    InitKeypad();
    EXPECT_EQ(-1, getMenuSize(nullptr, eMenuVertical, &width, &height));
    EXPECT_EQ(-1, getMenuSize(entries, eMenuVertical, &width, nullptr));
    const char* none[] = {nullptr};
    EXPECT_EQ(-1, getMenuSize(none, eMenuVertical, &width, &height));

    uint32_t* screen = vp_fb_pixels("/dev/fb0");
    for (int k = 0; k < kW * kH; ++k)
        screen[k] = ((uint32_t(k) * 2654435761u >> 8) & 0x7F7F7F) | 0x010101;
    const std::vector<uint32_t> before(screen, screen + kW * kH);
    // "été" is three characters in UTF-8 and five bytes read one by one.
    const char* accents[] = {"\xC3\xA9t\xC3\xA9", "x", nullptr};
    std::vector<std::string> names;
    for (int n = 0; n < 40; ++n) names.push_back("Entry " + std::to_string(n));
    std::vector<const char*> many;
    for (const std::string& name : names) many.push_back(name.c_str());
    many.push_back(nullptr);
    struct {
        const char** entries;
        int orientation, encoding, x, y, boxHeight;  // boxHeight 0: InitMenu
    } cases[] = {
        {entries, eMenuVertical, VANTOR_TEXT_BYTES, 10, 20, 0},
        {entries, eMenuHorizontal, VANTOR_TEXT_BYTES, 10, 20, 0},
        {accents, eMenuVertical, VANTOR_TEXT_UTF8, 30, 5, 0},
        {accents, eMenuVertical, VANTOR_TEXT_BYTES, 30, 5, 0},
        {many.data(), eMenuVertical, VANTOR_TEXT_BYTES, 10, 20, 0},    // scrolls
        {many.data(), eMenuHorizontal, VANTOR_TEXT_BYTES, 10, 20, 0},  // scrolls
        {many.data(), eMenuVertical, VANTOR_TEXT_BYTES, 10, 20, 100},  // scrolls in its box
    };
    for (const auto& c : cases) {
        setTextEncoding(c.encoding);
        ASSERT_EQ(0, c.boxHeight > 0 ? InitMenuBox(c.x, c.y, kW, c.boxHeight) : InitMenu(c.x, c.y));
        ASSERT_EQ(0, getMenuSize(c.entries, c.orientation, &width, &height));
        Footprint painted{before.data()};
        vp_set_wait_hook(TakeFootprint, &painted);
        Script({kOk});
        EXPECT_EQ(1, ShowMenu(c.entries, c.orientation, eAlignLeft));
        vp_set_wait_hook(nullptr, nullptr);
        const std::string which = std::string(c.entries[0]) + " " + std::to_string(c.orientation) +
                                  " " + std::to_string(c.boxHeight);
        EXPECT_EQ(c.x, painted.left) << which;
        EXPECT_EQ(c.y, painted.top) << which;
        EXPECT_EQ(width, painted.right - painted.left + 1) << which;
        EXPECT_EQ(height, painted.bottom - painted.top + 1) << which;
    }
}
