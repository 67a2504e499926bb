// vantor menu: a list of entries; the chosen one's number (or tag) goes to stdout.
#include <vantor.h>

#include <algorithm>
#include <cstdio>

#include "CommandLine.h"
#include "Commands.h"
#include "Screen.h"

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
            entries.shown.push_back(words[i]);
            entries.answers.push_back(std::to_string(i + 1));
        }
        return entries;
    }
    if (words.size() % 2 != 0) throw UsageError("menu: --tag needs TAG ITEM pairs");
    size_t tagWidth = 0;
    for (size_t i = 0; i < words.size(); i += 2) tagWidth = std::max(tagWidth, words[i].size());
    for (size_t i = 0; i < words.size(); i += 2) {
        entries.answers.push_back(words[i]);
        entries.shown.push_back(words[i] + std::string(tagWidth - words[i].size() + 2, ' ') +
                                words[i + 1]);
    }
    return entries;
}

// The library's menu keeps 5 pixels around its entries and 8 between rows (15 between
// columns); this estimate only centres the menu, the library sizes it itself.
void MenuSize(const Entries& entries, bool horizontal, const Screen& screen, int& width,
              int& height) {
    const int cw = screen.cellWidth(), ch = screen.cellHeight();
    width = height = 0;
    for (const std::string& text : entries.shown) {
        const int w = int(text.size()) * cw;
        width = horizontal ? width + w + 15 : std::max(width, w);
    }
    const int rows = horizontal ? 1 : int(entries.shown.size());
    width += 16;
    height = rows * (ch + 8) + 8;
}

// The library's menu does not scroll: entries past the screen's edge could be chosen
// without being seen, so such a menu is refused.
void RequireRoom(int width, int height, const Screen& screen) {
    if (width <= screen.width() && height <= screen.height()) return;
    throw UsageError("menu: the entries need " + std::to_string(width) + "x" +
                     std::to_string(height) + " pixels, the screen has " +
                     std::to_string(screen.width()) + "x" + std::to_string(screen.height()) +
                     "; give fewer or shorter entries");
}

// The title is a line of the main canvas just above the menu, so Restore takes it away
// with the menu.
void ShowTitle(const std::string& title, const Box& box, int titleHeight) {
    InitCanvas(box.x, box.y, box.width, titleHeight);
    WriteText(0, 0, title.c_str(), 0xFFFFFF, 1);
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

    Screen screen(line.value("--device", "/dev/fb0"));
    Screen::OpenKeypad();
    int width = 0, height = 0, titleWidth = 0, titleHeight = 0;
    MenuSize(entries, horizontal, screen, width, height);
    if (!title.empty()) getFontSize(1, &titleWidth, &titleHeight);
    width = std::max(width, int(title.size()) * titleWidth);
    RequireRoom(width, height + titleHeight, screen);
    const Box box = screen.Place(line.value("--geometry"), width, height + titleHeight);
    if (!title.empty()) ShowTitle(title, box, titleHeight);

    std::vector<const char*> items;
    for (const std::string& text : entries.shown) items.push_back(text.c_str());
    items.push_back(nullptr);
    InitMenu(box.x, box.y + titleHeight);
    const int answer = ShowMenu(items.data(), horizontal ? eMenuHorizontal : eMenuVertical, align);
    if (!line.has("--keep")) Restore();
    if (answer < 1) return StatusOfLeavingKey(answer);
    std::printf("%s\n", entries.answers[size_t(answer) - 1].c_str());
    return kExitOk;
}

}  // namespace VantorTool
