// SPDX-License-Identifier: MIT
// vantor yesno / vantor ok: lines of text with buttons; the answer is the exit status.
#include <vantor.h>

#include <algorithm>
#include <cstdio>

#include "CommandLine.h"
#include "Commands.h"
#include "Screen.h"
#include "TextLines.h"
#include "Utf8Text.h"
#include "vantor/Dialog.h"

namespace VantorTool {

namespace {

using Vantor::CDialog;

// The library writes the lines kTextInset in from the box's corner and puts the button
// row in its bottom-right corner; the box leaves this much more room above the row, so
// the last line never touches a button.
const int kInset = CDialog::kTextInset;
const int kRoomAboveButtons = 9;
const int kMinimumColumns = 24;

// The labels the library's dialog shows, so the row is measured as it will be laid out.
struct ButtonLabels {
    explicit ButtonLabels(int type) {
        for (int n = 0; n < 2; ++n) labels[n] = CDialog::ButtonLabel(eDialogType(type), n);
    }
    const char* labels[3] = {};  // two at most, and the end
};

// The height the buttons take at the box's bottom: their row and the room above it.
int ButtonsHeight(int type) {
    int width = 0, height = 0;
    ButtonLabels buttons(type);
    if (getMenuSize(buttons.labels, eMenuHorizontal, &width, &height) != 0)
        throw CommandFailure(kExitNoDisplay, "the dialog's buttons do not fit the screen");
    return height + kRoomAboveButtons;
}

// Wide enough for the longest line, at least room for the buttons, at most three
// quarters of the screen (longer lines are wrapped to that).
int DefaultWidth(const std::vector<std::string>& lines, const Screen& screen) {
    size_t longest = 0;
    for (const std::string& text : lines) longest = std::max(longest, Characters(text));
    const int cw = screen.cellWidth();
    const int widest =
        std::max(screen.width() * 3 / 4, std::min(screen.width(), kMinimumColumns * cw));
    return std::min(std::max(int(longest) * cw, kMinimumColumns * cw) + 4 * kInset, widest);
}

// Lines the box cannot hold are left out with a word on stderr, never drawn over the
// buttons.
void FitHeight(std::vector<std::string>& lines, const Box& box, const Screen& screen, int buttons) {
    const int room = (box.height - 2 * kInset - buttons) / screen.cellHeight();
    const size_t fits = size_t(std::max(room, 0));
    if (lines.size() <= fits) return;
    std::fprintf(stderr, "vantor: %zu of %zu lines do not fit the dialog and are left out\n",
                 lines.size() - fits, lines.size());
    lines.resize(fits);
}

// The library's Ok/Cancel dialog starts on Cancel; a script asking "Ok?" expects Ok
// first. So the lines are shown as a dialog without buttons, and the two buttons as a
// row menu where the dialog's own would be, in its bottom-right corner: the same look,
// starting on Ok.
int AskOkFirst(std::vector<const char*>& texts, const Box& box, int align) {
    ButtonLabels row(eDialogOkCancel);
    const char** buttons = row.labels;
    int rowWidth = 0, rowHeight = 0;
    getMenuSize(buttons, eMenuHorizontal, &rowWidth, &rowHeight);
    ShowDialog(texts.data(), 0, align);
    InitMenu(box.x + box.width - 1 - rowWidth, box.y + box.height - 1 - rowHeight);
    return ShowMenu(buttons, eMenuHorizontal, eAlignLeft);
}

int RunDialog(const CommandLine& line, int type, bool okFirst = false) {
    line.requireOperands(1, 1000, "the text to show");
    std::vector<std::string> lines = SplitLines(line.operands());
    const int align = ParseAlign("--align", line.value("--align", "left"));
    const std::string geometry = line.value("--geometry");

    Screen screen(line.value("--device"));
    Screen::OpenKeypad();
    const int width = screen.Place(geometry, DefaultWidth(lines, screen), 1).width;
    lines = WrapLines(lines, size_t((width - 2 * kInset) / screen.cellWidth()));
    const int buttons = ButtonsHeight(type);
    const int height = int(lines.size()) * screen.cellHeight() + 2 * kInset + buttons;
    const Box box = screen.Place(geometry, width, height);
    FitHeight(lines, box, screen, buttons);

    std::vector<const char*> texts;
    for (const std::string& text : lines) texts.push_back(text.c_str());
    texts.push_back(nullptr);
    // A canvas over the box keeps what was under it: the dialog itself leaves black.
    InitCanvas(box.x, box.y, box.width, box.height);
    InitDialog(box.x, box.y, box.width, box.height);
    const int answer =
        okFirst ? AskOkFirst(texts, box, align) : ShowDialog(texts.data(), type, align);
    Restore();
    if (answer == 1) return kExitOk;
    if (answer == 2) return kExitDeclined;
    return StatusOfLeavingKey(answer);
}

}  // namespace

int RunYesNo(int argc, char** argv) {
    return RunDialog(CommandLine(argc, argv, {{"--align", true}}), eDialogYesNo);
}

int RunOk(int argc, char** argv) {
    const CommandLine line(
        argc, argv, {{"--align", true}, {"--ok-cancel", false}, {"--default-cancel", false}});
    if (line.has("--default-cancel") && !line.has("--ok-cancel"))
        throw UsageError("ok: --default-cancel needs --ok-cancel");
    if (!line.has("--ok-cancel")) return RunDialog(line, eDialogOk);
    return RunDialog(line, eDialogOkCancel, !line.has("--default-cancel"));
}

}  // namespace VantorTool
