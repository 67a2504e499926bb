// SPDX-License-Identifier: MIT
// Menus longer than a 480 x 272 screen through the C interface: every entry can be
// reached, is on the screen while selected, can be chosen, and the screen comes back.
#include <string>

#include "InterfaceFixture.h"
#include "TestSupport.h"
#include "vantor_platform.h"

namespace {

const int kW = 480, kH = 272, kCount = 50;
const uint32_t kBlack = 0, kWhite = 0xFFFFFF;

// Entry n (from 1) is the one character 0x40 + n, so a cell tells which entry it is.
int CodeOf(int entry) {
    return 0x40 + entry;
}

struct Watch {
    int orientation, x, y;
    int direction = 1;        // +1 stepping to the next entry, -1 to the previous
    std::vector<int> seenAt;  // at each key wait: where the selected entry showed, or -1
    int height = 0;           // of the box the menu scrolls in; 0: the screen

    int Selected(int wait) const { return ((wait * direction) % kCount + kCount) % kCount + 1; }
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
        uint32_t* pixels = vp_fb_pixels("/dev/fb0");
        for (int k = 0; k < kW * kH; ++k) pixels[k] = uint32_t(k * 2654435761u) & 0xFFFFFF;
        for (int n = 1; n <= kCount; ++n) texts.push_back(std::string(1, char(CodeOf(n))));
        for (const std::string& text : texts) entries.push_back(text.c_str());
        entries.push_back(nullptr);
    }

    static bool Shows(int code, int x, int y, uint32_t ink, uint32_t paper) {
        if (x < 0 || y < 0 || x + 8 > kW || y + 16 > kH) return false;
        const uint32_t* pixels = vp_fb_pixels("/dev/fb0");
        for (int r = 0; r < 16; ++r) {
            for (int c = 0; c < 8; ++c) {
                const bool bit = VantorTest::GlyphBit(code, r, c);
                if (pixels[(y + r) * kW + x + c] != (bit ? ink : paper)) return false;
            }
        }
        return true;
    }

    // Where along the menu's axis the entry shows in inverse colours, or -1.
    static int Find(const Watch& w, int entry) {
        const bool column = w.orientation == eMenuVertical;
        for (int at = 0; at < (column ? kH : kW); ++at) {
            const int x = column ? w.x + 5 : at, y = column ? at : w.y + 5;
            if (Shows(CodeOf(entry), x, y, kBlack, kWhite)) return at;
        }
        return -1;
    }

    // Steps `times` times in the watch's direction, then chooses; records at every key
    // wait where the selected entry was on the screen.
    int Run(Watch& w, int times) {
        std::string keys;
        for (int k = 0; k < times; ++k) keys += w.direction > 0 ? "7," : "6,";
        Script((keys + "149").c_str());
        vp_set_wait_hook(
            [](int, void* user) {
                Watch& watched = *static_cast<Watch*>(user);
                const int wait = int(watched.seenAt.size());
                watched.seenAt.push_back(Find(watched, watched.Selected(wait)));
            },
            &w);
        if (w.height > 0) {
            InitMenuBox(w.x, w.y, kW, w.height);
        } else {
            InitMenu(w.x, w.y);
        }
        const int result = ShowMenu(entries.data(), w.orientation, eAlignLeft);
        vp_set_wait_hook(nullptr, nullptr);
        return result;
    }

    std::vector<uint32_t> Screen() const {
        const uint32_t* pixels = vp_fb_pixels("/dev/fb0");
        return std::vector<uint32_t>(pixels, pixels + kW * kH);
    }

    std::vector<std::string> texts;
    std::vector<const char*> entries;
};

// Every entry of a column or a row is selected in turn, going down and going up (which
// wraps from the first entry to the last at once); each shows while selected (within
// the menu's box, when it has one), the last one stepped to is the one chosen, and the
// screen comes back whole.
TEST_F(Scroll, EveryEntryIsSeenAndCanBeChosen) {
    const Watch watches[] = {{eMenuVertical, 10, 4, 1, {}},
                             {eMenuVertical, 200, 100, -1, {}},
                             {eMenuHorizontal, 7, 30, 1, {}},
                             {eMenuHorizontal, 100, 200, -1, {}},
                             {eMenuVertical, 10, 4, -1, {}, 100}};
    const std::vector<uint32_t> before = Screen();
    for (Watch w : watches) {
        const int times = kCount + 2;  // all the way round and two more
        EXPECT_EQ(w.Selected(times), Run(w, times)) << w.orientation << " " << w.direction;
        ASSERT_EQ(size_t(times + 1), w.seenAt.size());
        for (int wait = 0; wait <= times; ++wait) {
            EXPECT_GE(w.seenAt[size_t(wait)], 0) << "entry " << w.Selected(wait) << " unseen, "
                                                 << w.orientation << " " << w.direction;
            const bool column = w.orientation == eMenuVertical;
            const int end = column ? w.y + (w.height > 0 ? w.height : kH) : kW;
            EXPECT_LE(w.seenAt[size_t(wait)] + (column ? 16 : 8), end);
        }
        EXPECT_TRUE(before == Screen()) << w.orientation << " " << w.direction;
    }
}

// A column whose last entry ends on the screen's bottom row does not scroll: its entries
// stand 24 pixels apart from (5, 5) in a black box of 15 x 263, and nothing else
// changes. One entry more and the menu scrolls, its box kept on the screen.
TEST_F(Scroll, AMenuThatFitsIsDrawnAsAlways) {
    const int x = 30, y = kH - (5 + 10 * 24 + 16);
    entries[11] = nullptr;
    const std::vector<uint32_t> before = Screen();
    std::vector<uint32_t> shown;
    vp_set_wait_hook(
        [](int, void* user) {
            *static_cast<std::vector<uint32_t>*>(user) =
                std::vector<uint32_t>(vp_fb_pixels("/dev/fb0"), vp_fb_pixels("/dev/fb0") + kW * kH);
        },
        &shown);
    Script("149");
    InitMenu(x, y);
    EXPECT_EQ(1, ShowMenu(entries.data(), eMenuVertical, eAlignLeft));
    for (int py = 0; py < kH; ++py) {
        for (int px = 0; px < kW; ++px) {
            const int c = px - x - 5, r = py - y - 5;
            const bool inBox = px >= x && px < x + 15 && py >= y && py < y + 263;
            const bool inCell = c >= 0 && c < 8 && r >= 0 && r % 24 < 16 && r / 24 < 11;
            const bool bit = inCell && VantorTest::GlyphBit(CodeOf(r / 24 + 1), r % 24, c);
            const bool first = r / 24 == 0;
            uint32_t want = before[size_t(py * kW + px)];
            if (inBox) want = inCell && bit == first ? kBlack : inCell || first ? kWhite : kBlack;
            if (inBox && !inCell) want = kBlack;
            ASSERT_EQ(want, shown[size_t(py * kW + px)]) << px << "," << py;
        }
    }
    entries[11] = texts[11].c_str();
    entries[12] = nullptr;
    Watch w{eMenuVertical, x, y, 1, {}};
    EXPECT_EQ(12, Run(w, 11));
    EXPECT_LT(w.seenAt.back() + 16, kH);
    EXPECT_TRUE(before == Screen());
}
