// SPDX-License-Identifier: MIT
// vantor gauge: a progress window driven from stdin until the input ends.
#include <vantor.h>

#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string>

#include "CommandLine.h"
#include "Commands.h"
#include "GaugeReader.h"
#include "InputLines.h"
#include "Screen.h"

namespace VantorTool {

namespace {

// Longer lines are cut: the window shows one line of a few dozen characters.
const size_t kLongestLine = 4096;

// The writer must never die of SIGPIPE because we stopped reading: without a display
// its lines are read and dropped all the same, and the status says why nothing showed.
int DrainWithoutDisplay(const CommandFailure& failure) {
    std::fprintf(stderr, "vantor: %s; reading the input without a progress window\n",
                 failure.what());
    InputLines input(STDIN_FILENO, kLongestLine);
    std::string ignored;
    while (input.Next(ignored)) {
    }
    return failure.status;
}

}  // namespace

int RunGauge(int argc, char** argv) {
    const CommandLine line(argc, argv, {{"--text", true}, {"--percent", true}, {"--keep", false}});
    line.requireOperands(0, 0, "nothing");
    const float start = ParseNumber("--percent", line.value("--percent", "0"), 0, 100);
    const std::string text = line.value("--text");

    std::unique_ptr<Screen> screen;
    try {
        screen = std::make_unique<Screen>(line.value("--device"));
    } catch (const CommandFailure& failure) {
        return DrainWithoutDisplay(failure);
    }
    const Box box = screen->PlaceProgress(line.value("--geometry"));
    if (InitProgress(box.x, box.y, box.width, box.height) != 0) {
        return DrainWithoutDisplay(
            CommandFailure(kExitNoDisplay, "the progress window does not fit on the screen"));
    }
    ShowProgress(text.empty() ? nullptr : text.c_str(), eAlignLeft, start);

    GaugeReader reader;
    GaugeReader::Step step;
    float percent = start;
    std::string input;
    auto show = [&] {
        if (step.moves) percent = step.percent;
        UpdateProgress(step.hasText ? step.text.c_str() : nullptr, eAlignLeft, percent);
    };
    InputLines lines(STDIN_FILENO, kLongestLine);
    while (lines.Next(input)) {
        if (reader.Feed(input, step)) show();
    }
    if (reader.Finish(step)) show();
    if (!line.has("--keep")) HideProgress();
    return kExitOk;
}

}  // namespace VantorTool
