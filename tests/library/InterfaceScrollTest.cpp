// SPDX-License-Identifier: MIT
// Fifty menu entries on a 480 x 272 screen through the C interface: each can be reached,
// shows while selected and can be chosen, and the screen comes back; a menu that fits
// is laid out as it always was.
#include "InterfaceFixture.h"
#include "TestSupport.h"
#include "vantor_platform.h"

namespace {

const int kW = 480, kH = 272, kCount = 50;
const int kFitX = 30, kFitY = kH - (5 + 10 * 24 + 16);  // 11 entries end on the last row

uint32_t* Screen() {
    return vp_fb_pixels("/dev/fb0");
}

// Entry n (from 1) is the one character 0x40 + n, so a cell tells which entry it is.
bool Shows(int entry, int x, int y, uint32_t ink, uint32_t paper) {
    if (x < 0 || y < 0 || x + 8 > kW || y + 16 > kH) return false;
    for (int r = 0; r < 16; ++r) {
        for (int c = 0; c < 8; ++c) {
            const bool bit = VantorTest::GlyphBit(0x40 + entry, r, c);
            if (Screen()[(y + r) * kW + x + c] != (bit ? ink : paper)) return false;
        }
    }
    return true;
}

struct Walk {
    int orientation, x, y, height, direction;  // height of the menu's box; 0: the screen
    int waits = 0, unseen = 0;

    int Selected() const { return ((waits * direction) % kCount + kCount) % kCount + 1; }
    bool SelectedIsSeenInItsBox() const {
        const bool column = orientation == eMenuVertical;
        const int end = column ? (height > 0 ? y + height : kH) - 16 : kW - 8;
        for (int at = 0; at <= end; ++at) {
            if (Shows(Selected(), column ? x + 5 : at, column ? at : y + 5, 0, 0xFFFFFF))
                return true;
        }
        return false;
    }
};

}  // namespace

class Scroll : public Interface {
  protected:
    void SetUp() override {
        Interface::SetUp();
        const vp_screen screen = {kW, kH, kW, kH, 32, 0};
        ASSERT_EQ(0, vp_fb_add("/dev/fb0", &screen));
        InitFramebuffer("/dev/fb0");
        AddKeypad();
        InitKeypad();
        for (int k = 0; k < kW * kH; ++k) Screen()[k] = uint32_t(k * 2654435761u) & 0xFFFFFF;
        static char names[kCount][2];
        for (int n = 1; n <= kCount; ++n) entries.push_back(&(names[n - 1][0] = char(0x40 + n)));
        entries.push_back(nullptr);
    }

    std::vector<const char*> entries;
};

// Down through a column or a row, all the way round and two more, or up (which wraps
// to the last entry at once); also in a box shorter than the screen.
TEST_F(Scroll, EveryEntryIsSeenAndCanBeChosen) {
    const std::vector<uint32_t> before(Screen(), Screen() + kW * kH);
    for (Walk w : {Walk{eMenuVertical, 10, 4, 0, 1}, Walk{eMenuVertical, 200, 100, 0, -1},
                   Walk{eMenuHorizontal, 7, 30, 0, 1}, Walk{eMenuHorizontal, 100, 200, 0, -1},
                   Walk{eMenuVertical, 10, 4, 100, -1}}) {
        std::string keys;
        for (int k = 0; k < kCount + 2; ++k) keys += w.direction > 0 ? "7," : "6,";
        Script((keys + "149").c_str());
        vp_set_wait_hook(
            [](int, void* walk) {
                Walk& w = *static_cast<Walk*>(walk);
                w.unseen += w.SelectedIsSeenInItsBox() ? 0 : 1;
                ++w.waits;
            },
            &w);
        w.height > 0 ? InitMenuBox(w.x, w.y, kW, w.height) : InitMenu(w.x, w.y);
        const int chosen = ShowMenu(entries.data(), w.orientation, eAlignLeft);
        vp_set_wait_hook(nullptr, nullptr);
        --w.waits;  // the wait for the choosing key
        EXPECT_EQ(w.Selected(), chosen) << w.orientation << " " << w.direction;
        EXPECT_EQ(0, w.unseen) << w.orientation << " " << w.direction << " " << w.height;
        EXPECT_TRUE(before == std::vector<uint32_t>(Screen(), Screen() + kW * kH));
    }
}

// Eleven entries whose last ends on the screen's bottom row stand where they always
// stood: 24 pixels apart from (5, 5), the first one selected.
TEST_F(Scroll, AMenuThatFitsIsLaidOutAsAlways) {
    int placed = 0;
    vp_set_wait_hook(
        [](int, void* placed) {
            for (int n = 1; n <= 11; ++n) {
                const uint32_t ink = n == 1 ? 0 : 0xFFFFFF, y = kFitY + 5 + 24 * (n - 1);
                *static_cast<int*>(placed) += Shows(n, kFitX + 5, int(y), ink, ink ^ 0xFFFFFF);
            }
        },
        &placed);
    Script("149");
    InitMenu(kFitX, kFitY);
    entries[11] = nullptr;
    EXPECT_EQ(1, ShowMenu(entries.data(), eMenuVertical, eAlignLeft));
    vp_set_wait_hook(nullptr, nullptr);
    EXPECT_EQ(11, placed);
}
