// Glyphs, text lines and progress bars drawn into a canvas.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "TestSupport.h"
#include "vantor/AsciiText.h"
#include "vantor/BitmapFont.h"
#include "vantor/Canvas.h"
#include "vantor/ProgressBar.h"

using namespace Vantor;
using namespace VantorTest;

namespace {

const uint32_t kFg = 0x00FF00;
const uint32_t kBg = 0x000044;
const uint32_t kPaper = 0x777777;

class Drawing : public ::testing::Test {
  protected:
    Drawing() : font(WriteFont(MakeTempDir() + "/f.tf", 8, 16, {'A', 'B', 'C'}).c_str()) {
        canvas.background = kPaper;
        canvas.Refresh();
    }

    // True when the cell at (x, y) shows glyph `code` in the test colours.
    bool CellShows(int code, int x, int y) {
        for (int r = 0; r < 16; ++r) {
            for (int c = 0; c < 8; ++c) {
                const uint32_t want = GlyphBit(code, r, c) ? kFg : kBg;
                if (canvas.pPixels[(y + r) * canvas.getWidth() + x + c] != want) return false;
            }
        }
        return true;
    }

    int FirstCellOf(const char* text, eAlignMode alignment, int x) {
        CAsciiText line(text, font, CPoint(x, 0), kFg, kBg);
        line.setAlignment(alignment);
        canvas.Refresh();
        line.Draw(canvas);
        for (int column = 0; column + 8 <= canvas.getWidth(); ++column) {
            if (CellShows(text[0], column, 0)) return column;
        }
        return -1;
    }

    CBitmapFont font;
    CCanvas canvas{0, 0, 100, 40};
};

}  // namespace

TEST_F(Drawing, LeftTextFillsWholeCellsAndSkipsUnknownCharacters) {
    CAsciiText line("AzB", font, CPoint(10, 20), kFg, kBg);
    line.Draw(canvas);
    EXPECT_TRUE(CellShows('A', 10, 20));
    EXPECT_EQ(kPaper, canvas.pPixels[20 * 100 + 18]);  // 'z' is not in the font
    EXPECT_TRUE(CellShows('B', 26, 20));
    EXPECT_EQ(kPaper, canvas.pPixels[19 * 100 + 10]);
}

// A cell partly off any edge shows exactly its part on the canvas; one wholly off (also
// near the int limits, where a careless sum wraps round) changes nothing, not even
// `modified`.
TEST_F(Drawing, CellsAreClippedAtEveryEdge) {
    const CPoint positions[] = {{-3, -5},
                                {95, 30},
                                {-7, 30},
                                {50, -15},
                                {96, 37},
                                {100, 0},
                                {-8, 0},
                                {0, 40},
                                {0, -16},
                                {0, 24},
                                {INT_MAX - 4, 0},
                                {INT_MIN, 0},
                                {INT_MIN + 3, INT_MAX}};
    for (const CPoint& at : positions) {
        canvas.Refresh();
        canvas.modified = false;
        CAsciiText("A", font, at, kFg, kBg).Draw(canvas);
        bool visible = false;
        for (int y = 0; y < 40; ++y) {
            for (int x = 0; x < 100; ++x) {
                const long long c = x - static_cast<long long>(at.x);
                const long long r = y - static_cast<long long>(at.y);
                const bool inCell = c >= 0 && c < 8 && r >= 0 && r < 16;
                visible = visible || inCell;
                const uint32_t want = !inCell ? kPaper : GlyphBit('A', r, c) ? kFg : kBg;
                ASSERT_EQ(want, canvas.pPixels[y * 100 + x]) << at.x << "," << at.y;
            }
        }
        EXPECT_EQ(visible, canvas.modified) << at.x << "," << at.y;
    }
}

TEST_F(Drawing, AlignmentPlacesTheFirstCell) {
    EXPECT_EQ(38, FirstCellOf("ABC", eAlignCenter, 0));
    EXPECT_EQ(43, FirstCellOf("ABC", eAlignCenter, 5));
    EXPECT_EQ(76, FirstCellOf("ABC", eAlignRight, 0));
    EXPECT_EQ(72, FirstCellOf("ABC", eAlignRight, 4));
    EXPECT_EQ(7, FirstCellOf("ABC", static_cast<eAlignMode>(0x22), 7));  // not a known value
}

// The bar's fill is clamped to 0..100 % and covers its share of the box, to the pixel.
TEST_F(Drawing, ProgressBarClampsAndFillsInProportion) {
    CProgressBar bar(5, 20, 90, 15);
    const std::pair<float, float> clamps[] = {{-3, 0}, {std::nanf(""), 0}, {150, 100}};
    for (const auto& [asked, kept] : clamps) {
        bar.setProgress(asked);
        EXPECT_EQ(kept, bar.progress) << asked;
    }
    bar.setProgress(50);
    bar.Draw(canvas);
    const uint32_t white = 0xFFFFFF;
    EXPECT_EQ(white, canvas.pPixels[27 * 100 + 48]);  // the filled half ends here
    EXPECT_EQ(0u, canvas.pPixels[27 * 100 + 49]);     // empty half in black
    EXPECT_EQ(white, canvas.pPixels[34 * 100 + 94]);  // outline closes the last row and column
    EXPECT_EQ(white, canvas.pPixels[20 * 100 + 94]);
    bar.setProgress(0.5f);  // less than one pixel: nothing outside the box
    bar.Draw(canvas);
    EXPECT_EQ(kPaper, canvas.pPixels[27 * 100 + 4]);
}
