// SPDX-License-Identifier: MIT
// vantor text / vantor clear: lines that stay on the screen after the command ends.
// The library never blanks the screen when it is unloaded, so whatever the main canvas
// last showed remains until something paints over it.
#include <vantor.h>

#include <algorithm>
#include <string>

#include "CommandLine.h"
#include "Commands.h"
#include "Screen.h"
#include "TextLines.h"
#include "Utf8Text.h"

namespace VantorTool {

namespace {

// Where the text goes: --at places its corner, --geometry gives a whole box. Without
// either, the top-left corner of the screen; the size is filled in from the screen.
Box RequestedBox(const CommandLine& line) {
    Box box;
    if (line.has("--geometry")) box = ParseBox("--geometry", line.value("--geometry"));
    if (line.has("--at")) {
        const Box at = ParsePoint("--at", line.value("--at"));
        box.x = at.x;
        box.y = at.y;
    }
    return box;
}

// Text that starts off the screen, or a word wider than the box, would be drawn as
// nothing or as a column of single letters: refused before anything is drawn.
void RequireRoom(const Box& box, const std::vector<std::string>& lines, int cw,
                 const Screen& screen) {
    if (box.x >= screen.width() || box.y >= screen.height()) {
        throw CommandFailure(kExitNoDisplay, "the text at " + std::to_string(box.x) + "," +
                                                 std::to_string(box.y) + " starts off the " +
                                                 std::to_string(screen.width()) + "x" +
                                                 std::to_string(screen.height()) + " screen");
    }
    const size_t columns = size_t(std::max(0, std::min(box.width, screen.width() - box.x) / cw));
    for (const std::string& text : lines) {
        for (size_t start = text.find_first_not_of(' '); start != std::string::npos;) {
            const size_t end = std::min(text.find(' ', start), text.size());
            if (end - start > columns) {
                throw CommandFailure(kExitNoDisplay,
                                     "the text does not fit: \"" + text.substr(start, end - start) +
                                         "\" is wider than the " + std::to_string(columns) +
                                         (columns == 1 ? " character" : " characters") +
                                         " from x=" + std::to_string(box.x));
            }
            start = text.find_first_not_of(' ', end);
        }
    }
}

Box FitToScreen(Box box, const Screen& screen) {
    if (box.width == 0) box.width = std::max(1, screen.width() - box.x);
    if (box.height == 0) box.height = std::max(1, screen.height() - box.y);
    return box;
}

}  // namespace

// The canvas covers only the lines (the full box width when aligned), so the rest of
// the screen keeps what earlier commands put there.
int RunText(int argc, char** argv) {
    const CommandLine line(
        argc, argv,
        {{"--bold", false}, {"--fg", true}, {"--bg", true}, {"--align", true}, {"--at", true}});
    line.requireOperands(1, 1000, "the text to show");
    const int font = line.has("--bold") ? 1 : 0;
    const uint32_t fg = ParseColour("--fg", line.value("--fg", "FFFFFF"));
    const uint32_t bg = ParseColour("--bg", line.value("--bg", "000000"));
    const bool aligned = line.has("--align");
    const int align = ParseAlign("--align", line.value("--align", "left"));
    const Box requested = RequestedBox(line);

    Screen screen(line.value("--device"));
    int cw = 8, ch = 16;
    getFontSize(font, &cw, &ch);
    const Box box = FitToScreen(requested, screen);
    const std::vector<std::string> given = SplitLines(line.operands());
    RequireRoom(box, given, cw, screen);
    std::vector<std::string> lines = WrapLines(given, size_t(std::max(1, box.width / cw)));
    const size_t fits = size_t(std::max(1, box.height / ch));
    const size_t wanted = lines.size();
    if (wanted > fits) lines.resize(fits);
    size_t longest = 1;
    for (const std::string& text : lines) longest = std::max(longest, Characters(text));
    const int width = aligned ? box.width : std::min(box.width, int(longest) * cw);
    if (InitCanvas(box.x, box.y, width, int(lines.size()) * ch) != 0)
        throw CommandFailure(kExitNoDisplay, "the text does not fit on the screen");
    // An aligned line is a band across the box in the background colour.
    const int mode = aligned ? align | eAlignFillLine : eAlignLeft;
    for (size_t i = 0; i < lines.size(); ++i)
        WriteAlignedTextWithBackground(0, int(i) * ch, lines[i].c_str(), fg, bg, font, mode);
    Update();
    if (wanted > fits) {
        throw CommandFailure(kExitNoDisplay,
                             "the text does not fit: " + std::to_string(wanted - fits) + " of " +
                                 std::to_string(wanted) + " lines are left out");
    }
    return kExitOk;
}

int RunClear(int argc, char** argv) {
    const CommandLine line(argc, argv, {});
    line.requireOperands(0, 0, "nothing");
    Screen screen(line.value("--device"));
    const Box box = screen.Place(line.value("--geometry"), screen.width(), screen.height());
    InitCanvas(box.x, box.y, box.width, box.height);
    Update();
    return kExitOk;
}

}  // namespace VantorTool
