// What the C interface cannot steer: menu layouts, selections made in code, dialog types
// and a progress window's caption change, driven through key scripts.
#include <gtest/gtest.h>

#include "TestSupport.h"
#include "vantor/BitmapFont.h"
#include "vantor/Dialog.h"
#include "vantor/Menu.h"
#include "vantor/Progress.h"

using namespace Vantor;
using namespace VantorTest;

namespace {

class Widgets : public ::testing::Test {
  protected:
    Widgets() : font(WriteFont(MakeTempDir() + "/f.tf", 8, 16, Printable()).c_str()) {}

    static std::vector<int> Printable() {
        std::vector<int> codes;
        for (int c = 32; c < 127; ++c) codes.push_back(c);
        return codes;
    }

    // A column menu built the way the C interface builds one.
    CMenu& Menu(std::initializer_list<bool> selected) {
        menu.reset(new CMenu(font, keypad));
        int id = 1;
        for (bool on : selected) menu->AddItem(id++, "entry", on);
        menu->Draw();
        menu->Autoresize(3);
        return *menu;
    }

    int Query(CMenu& m, std::deque<int> keys) {
        keypad.script = std::move(keys);
        return m.QueryMenu(screen.data(), screen.width, screen.height, 0.2f);
    }

    CBitmapFont font;
    ScriptedKeypad keypad;
    Screen screen{320, 240, 0x123456};
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

// A menu starts at the last entry marked selected, and a second query where the first
// one was left.
TEST_F(Widgets, SelectionCarriesOverAndLastSelectedWins) {
    EXPECT_EQ(2, Query(Menu({true, true, false}), {10}));
    CMenu& m = Menu({false, false});
    Query(m, {114, 26});
    EXPECT_EQ(2, Query(m, {10}));
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
    screen.at(10, 10) = 0x123456;
    EXPECT_EQ(0, ask(0, {}));  // painted, no key read, stays on the screen
    EXPECT_EQ(0u, screen.at(10, 10));
}

TEST_F(Widgets, ProgressTextChangeLeavesNoTrace) {
    CProgress window(font, "A long caption", 0, 0, 200, 60);
    window.Refresh();
    window.setText("Short", eAlignLeft);
    EXPECT_EQ(0u, window.pPixels[10 * 200 + 5 + 8 * 10]);  // where "caption" was
}
