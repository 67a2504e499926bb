// SPDX-License-Identifier: MIT
// Text lines on the main canvas through the C interface: what shows at Update, where
// an aligned line starts and how a line partly off the canvas is cut.
#include <climits>

#include "InterfaceFixture.h"
#include "TestSupport.h"

namespace {

const uint32_t kInk = 0x00FF00, kPaper = 0x000044;

}  // namespace

class Text : public Interface {
  protected:
    void SetUp() override {
        Interface::SetUp();
        InitFramebuffer("/dev/fb0");
        InitCanvas(0, 0, 100, 40);
    }
};

TEST_F(Text, TextCallsAddLinesThatShowAtUpdateAndGoAtClear) {
    InitCanvas(0, 0, kWidth, kHeight);
    EXPECT_EQ(0, WriteText(10, 20, "A", 0xFFFFFF, 0));
    EXPECT_EQ(0, WriteInvText(40, 20, "A", 0xFFFFFF, 1));
    EXPECT_EQ(0, WriteTextWithBackground(70, 20, nullptr, 1, 2, 0));
    EXPECT_EQ(0, WriteAlignedTextWithBackground(0, 60, "A", 0xFF0000, 0x00FF00, 0,
                                                eAlignCenter | eAlignFillLine));
    EXPECT_EQ(0, WriteTextWithBackground(10, 100, "A\177B", kInk, kPaper, 0));
    EXPECT_EQ(-1, WriteText(0, 0, "A", 0xFFFFFF, 2));
    EXPECT_EQ(0u, Pixel(10, 20));  // nothing before Update
    Update();
    EXPECT_TRUE(CellShows('A', 10, 20, 0xFFFFFF, 0));
    EXPECT_TRUE(CellShows('A', 40, 20, 0, 0xFFFFFF));  // inverse: black ink on white cells
    EXPECT_EQ(0x00FF00u, Pixel(0, 60));                // the band spans the canvas
    EXPECT_TRUE(CellShows('A', (kWidth - 8) / 2, 60, 0xFF0000, 0x00FF00));
    EXPECT_EQ(0u, Pixel(18, 100));  // a character the font lacks leaves its cell empty
    EXPECT_TRUE(CellShows('B', 26, 100, kInk, kPaper));

    EXPECT_EQ(0, Clear());
    EXPECT_EQ(0u, Pixel(10, 20));
    Update();
    EXPECT_EQ(0u, Pixel(10, 20));
}

// An aligned line starts where its alignment puts it, counted from the given x; a
// value that is no alignment means left.
TEST_F(Text, AlignmentPlacesTheFirstCell) {
    const struct {
        int align, x, first;
    } cases[] = {{eAlignCenter, 0, 38},
                 {eAlignCenter, 5, 43},
                 {eAlignRight, 0, 76},
                 {eAlignRight, 4, 72},
                 {0x22, 7, 7}};
    for (const auto& c : cases) {
        Clear();
        WriteAlignedTextWithBackground(c.x, 0, "ABC", kInk, kPaper, 0, c.align);
        Update();
        EXPECT_TRUE(CellShows('A', c.first, 0, kInk, kPaper)) << c.align << " " << c.x;
    }
}

// A cell partly off any edge of the canvas shows exactly its part; one wholly off (also
// near the int limits, where a careless sum wraps round) shows nothing.
TEST_F(Text, CellsAreClippedAtEveryEdge) {
    const std::pair<int, int> positions[] = {
        {-3, -5}, {96, 37}, {100, 0},         {-8, 0},      {0, 40},
        {0, -16}, {0, 24},  {INT_MAX - 4, 0}, {INT_MIN, 0}, {INT_MIN + 3, INT_MAX}};
    for (const auto& [atX, atY] : positions) {
        Clear();
        WriteTextWithBackground(atX, atY, "A", kInk, kPaper, 0);
        Update();
        for (int y = 0; y < 40; ++y) {
            for (int x = 0; x < 100; ++x) {
                const long long c = x - static_cast<long long>(atX);
                const long long r = y - static_cast<long long>(atY);
                const bool inCell = c >= 0 && c < 8 && r >= 0 && r < 16;
                const uint32_t want = !inCell ? 0 : VantorTest::GlyphBit('A', r, c) ? kInk : kPaper;
                ASSERT_EQ(want, Pixel(x, y)) << atX << "," << atY;
            }
        }
    }
}
