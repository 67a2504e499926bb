// What the C interface cannot steer: where menu entries lie and selections made in
// code, driven through key scripts.
#include <gtest/gtest.h>

#include "TestSupport.h"
#include "vantor/BitmapFont.h"
#include "vantor/Menu.h"

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
        return m.QueryMenu(screen.data(), 320, 240, 0.2f);
    }

    CBitmapFont font;
    ScriptedKeypad keypad;
    std::vector<uint32_t> screen = std::vector<uint32_t>(320 * 240);
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
