// Menu, dialog and progress window driven through key scripts on an in-memory screen.
#include <gtest/gtest.h>

#include "TestSupport.h"
#include "vantor/AsciiText.h"
#include "vantor/BitmapFont.h"
#include "vantor/Dialog.h"
#include "vantor/Menu.h"
#include "vantor/MenuItem.h"
#include "vantor/Progress.h"
#include "vantor/ProgressBar.h"

using namespace Vantor;
using namespace VantorTest;

namespace {

const uint32_t kWallpaper = 0x123456;

class Widgets : public ::testing::Test {
  protected:
    Widgets() : font(WriteFont(MakeTempDir() + "/f.tf", 8, 16, Printable()).c_str()) {}

    static std::vector<int> Printable() {
        std::vector<int> codes;
        for (int c = 32; c < 127; ++c) codes.push_back(c);
        return codes;
    }

    // Builds a column menu the way the C interface does.
    CMenu& Menu(std::initializer_list<const char*> entries, std::deque<int> keys) {
        keypad.script = std::move(keys);
        menu.reset(new CMenu(font, keypad));
        menu->setOffset(40, 30);
        int id = 1;
        for (const char* text : entries) menu->AddItem(id++, text, false);
        menu->Draw();
        menu->Autoresize(3);
        return *menu;
    }

    int Query(CMenu& m) { return m.QueryMenu(screen.data(), screen.width, screen.height, 0.2f); }

    CBitmapFont font;
    ScriptedKeypad keypad;
    Screen screen{320, 240, kWallpaper};
    std::unique_ptr<CMenu> menu;
};

}  // namespace

// Entries follow each other down a column or along a row without overlapping.
TEST_F(Widgets, MenuEntriesDoNotOverlapInRowsOrColumns) {
    for (auto orientation : {eMenuVertical, eMenuHorizontal}) {
        CMenu m(font, keypad);
        m.orientation = orientation;
        for (const char* text : {"AB", "CDEFGH", "I"}) m.AddItem(1, text, false);
        m.Draw();
        CPoint at, previous(-1000, -1000);
        int width = 0, height = 0;
        for (CGObj* entry : m.objects) {
            entry->getPosition(at);
            if (orientation == eMenuVertical) {
                EXPECT_GE(at.y, previous.y + height);
            } else {
                EXPECT_GE(at.x, previous.x + width);
            }
            entry->getSize(width, height);
            previous = at;
        }
    }
}

TEST_F(Widgets, EmptyOrUnsizedMenusAnswerMinusOneWithoutTouchingTheScreen) {
    CMenu empty(font, keypad);
    EXPECT_EQ(-1, empty.Draw());
    EXPECT_EQ(-1, Query(empty));
    CMenu unsized(font, keypad);
    unsized.AddItem(1, "A", true);
    EXPECT_EQ(-1, Query(unsized));
    for (uint32_t pixel : screen.pixels) ASSERT_EQ(kWallpaper, pixel);
}

TEST_F(Widgets, SelectionCarriesOverAndLastSelectedWins) {
    CMenu& m = Menu({"A", "B"}, {114, 26});
    Query(m);
    keypad.script = {10};
    EXPECT_EQ(2, Query(m));

    CMenu preset(font, keypad);
    preset.AddItem(1, "A", true);
    preset.AddItem(2, "B", true);
    preset.Draw();
    preset.Autoresize(3);
    keypad.script = {10};
    EXPECT_EQ(2, Query(preset));
}

TEST_F(Widgets, DialogTypesDecideButtonsAndResults) {
    auto ask = [&](int type, std::deque<int> keys) {
        CDialog dialog(font, keypad, 10, 10, 200, 80, static_cast<eDialogType>(type));
        keypad.script = std::move(keys);
        return dialog.QueryDialog(screen.data(), screen.width, screen.height, 0.0f);
    };
    EXPECT_EQ(1, ask(eDialogYesNo, {108, 10}));
    EXPECT_EQ(2, ask(eDialogYesNo, {10}));
    EXPECT_EQ(1, ask(eDialogOk, {108, 114, 10}));
    EXPECT_EQ(-1, ask(7, {}));
    EXPECT_EQ(0u, screen.at(10, 10));
    screen.at(10, 10) = kWallpaper;
    EXPECT_EQ(0, ask(0, {}));  // painted, no key read, stays on the screen
    EXPECT_EQ(0u, screen.at(10, 10));
}

TEST_F(Widgets, ProgressTextChangeLeavesNoTrace) {
    CProgress window(font, "A long caption", 0, 0, 200, 60);
    window.Refresh();
    window.setText("Short", eAlignLeft);
    EXPECT_EQ(0u, window.pPixels[10 * 200 + 5 + 8 * 10]);  // where "caption" was
}
