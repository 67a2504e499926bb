// SPDX-License-Identifier: MIT
// vantor menu: a list of entries; the chosen one's number (or tag) goes to stdout.
#include <vantor.h>

#include <algorithm>
#include <cstdio>

#include "Answer.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Screen.h"
#include "Utf8Text.h"
#include "widgets/MenuLayout.h"

namespace VantorTool {

namespace {

struct Entries {
    std::vector<std::string> shown;    // what the menu shows
    std::vector<std::string> answers;  // what stdout gets for each
};

// With --tag the operands are TAG ITEM pairs, as whiptail takes them; the tags are
// padded to one width so the items line up in a column.
Entries ReadEntries(const CommandLine& line) {
    const std::vector<std::string>& words = line.operands();
    Entries entries;
    if (!line.has("--tag")) {
        for (size_t i = 0; i < words.size(); ++i) {
            // An empty entry has no width to highlight: a blank gives it one.
            entries.shown.push_back(words[i].empty() ? " " : words[i]);
            entries.answers.push_back(std::to_string(i + 1));
        }
        return entries;
    }
    if (words.size() % 2 != 0) throw UsageError("menu: --tag needs TAG ITEM pairs");
    size_t tagWidth = 0;
    for (size_t i = 0; i < words.size(); i += 2)
        tagWidth = std::max(tagWidth, Characters(words[i]));
    for (size_t i = 0; i < words.size(); i += 2) {
        entries.answers.push_back(words[i]);
        entries.shown.push_back(words[i] + std::string(tagWidth - Characters(words[i]) + 2, ' ') +
                                words[i + 1]);
    }
    return entries;
}

std::vector<const char*> Items(const Entries& entries) {
    std::vector<const char*> items;
    for (const std::string& text : entries.shown) items.push_back(text.c_str());
    items.push_back(nullptr);
    return items;
}

// The library sets a menu's entries this far in from its edges, so the entries' column
// is the menu less that margin on both sides and its frame's corner pixel.
using Vantor::CMenuLayout;
const int kMenuInset = CMenuLayout::kBorder;
const int kMenuFrame = int(CMenuLayout::Canvas(0));

// The title is a line of the main canvas just above the menu, so Restore takes it away
// with the menu. It spans the entries' column and is placed in it as the entries are; a
// title wider than the box is cut after the last whole character.
void ShowTitle(const std::string& title, const Box& box, int span, int titleWidth, int titleHeight,
               int align) {
    const int inset = kMenuInset;
    const int room = std::max(1, std::min(span, box.width - inset));
    InitCanvas(box.x + inset, box.y, room, titleHeight);
    const size_t fits = size_t(std::max(1, room / std::max(1, titleWidth)));
    WriteAlignedTextWithBackground(0, 0, FirstCharacters(title, fits).c_str(), 0xFFFFFF, 0x000000,
                                   1, align);
    Update();
}

}  // namespace

int RunMenu(int argc, char** argv) {
    const CommandLine line(argc, argv,
                           {{"--title", true},
                            {"--horizontal", false},
                            {"--align", true},
                            {"--tag", false},
                            {"--keep", false}});
    line.requireOperands(1, 1000, "menu entries");
    const Entries entries = ReadEntries(line);
    const bool horizontal = line.has("--horizontal");
    const int align = ParseAlign("--align", line.value("--align", "left"));
    const std::string title = line.value("--title");

    Screen screen(line.value("--device"));
    Screen::OpenKeypad();
    std::vector<const char*> items = Items(entries);
    const int orientation = horizontal ? eMenuHorizontal : eMenuVertical;
    // The library refuses a menu only when an entry is too wide for any canvas it would
    // make on this screen; a long menu scrolls. Refused here, the script hears why rather
    // than ShowMenu's -2, which would read as a keypad gone away.
    int width = 0, height = 0, titleWidth = 0, titleHeight = 0;
    if (getMenuSize(items.data(), orientation, &width, &height) != 0)
        throw CommandFailure(kExitNoDisplay,
                             "menu: an entry is too wide for any menu on this screen");
    if (!title.empty()) getFontSize(1, &titleWidth, &titleHeight);
    const int titleSpan = int(Characters(title)) * titleWidth;
    const int span = std::max(width - kMenuFrame, titleSpan);
    width = std::max(width, kMenuInset + titleSpan);  // the title stands inset as the entries do
    // The box is cut to the screen; the menu scrolls within what is left under the title.
    const Box box = screen.Place(line.value("--geometry"), width, height + titleHeight);
    if (!title.empty()) ShowTitle(title, box, span, titleWidth, titleHeight, align);

    if (InitMenuBox(box.x, box.y + titleHeight, box.width, std::max(1, box.height - titleHeight)))
        throw CommandFailure(kExitNoDisplay, "the menu cannot be made");
    const int answer = ShowMenu(items.data(), orientation, align);
    if (!line.has("--keep")) Restore();
    if (answer < 1) return StatusOfLeavingKey(answer);
    WriteAnswer(entries.answers[size_t(answer) - 1]);
    return kExitOk;
}

}  // namespace VantorTool
