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

    // A column menu built the way the C interface builds one, answering a key script.
    int Query(std::initializer_list<bool> selected, std::deque<int> keys) {
        CMenu menu(font, keypad);
        int id = 1;
        for (bool on : selected) menu.AddItem(id++, "entry", on);
        menu.Draw();
        menu.Autoresize(3);
        keypad.script = std::move(keys);
        return menu.QueryMenu(screen.data(), 320, 240, 0.2f);
    }

    CBitmapFont font;
    ScriptedKeypad keypad;
    std::vector<uint32_t> screen = std::vector<uint32_t>(320 * 240);
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

// A menu made in code starts at the last entry marked selected.
TEST_F(Widgets, LastSelectedEntryWins) {
    EXPECT_EQ(2, Query({true, true, false}, {10}));
}
