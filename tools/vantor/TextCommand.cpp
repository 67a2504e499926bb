// vantor text / vantor clear: lines that stay on the screen after the command ends.
// The library never blanks the screen when it is unloaded, so whatever the main canvas
// last showed remains until something paints over it.
#include <vantor.h>

#include <algorithm>
#include <cstdio>

#include "CommandLine.h"
#include "Commands.h"
#include "Screen.h"
#include "TextLines.h"

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

    Screen screen(line.value("--device", "/dev/fb0"));
    int cw = 8, ch = 16;
    getFontSize(font, &cw, &ch);
    const Box box = FitToScreen(requested, screen);
    std::vector<std::string> lines =
        WrapLines(SplitLines(line.operands()), size_t(std::max(1, box.width / cw)));
    const size_t fits = size_t(std::max(1, box.height / ch));
    if (lines.size() > fits) {
        std::fprintf(stderr, "vantor: %zu of %zu lines do not fit and are left out\n",
                     lines.size() - fits, lines.size());
        lines.resize(fits);
    }
    size_t longest = 1;
    for (const std::string& text : lines) longest = std::max(longest, text.size());
    const int width = aligned ? box.width : std::min(box.width, int(longest) * cw);
    if (InitCanvas(box.x, box.y, width, int(lines.size()) * ch) != 0)
        throw CommandFailure(kExitNoDisplay, "the text does not fit on the screen");
    // An aligned line is a band across the box in the background colour.
    const int mode = aligned ? align | eAlignFillLine : eAlignLeft;
    for (size_t i = 0; i < lines.size(); ++i)
        WriteAlignedTextWithBackground(0, int(i) * ch, lines[i].c_str(), fg, bg, font, mode);
    Update();
    return kExitOk;
}

int RunClear(int argc, char** argv) {
    const CommandLine line(argc, argv, {});
    line.requireOperands(0, 0, "nothing");
    Screen screen(line.value("--device", "/dev/fb0"));
    const Box box = screen.Place(line.value("--geometry"), screen.width(), screen.height());
    InitCanvas(box.x, box.y, box.width, box.height);
    Update();
    return kExitOk;
}

}  // namespace VantorTool
