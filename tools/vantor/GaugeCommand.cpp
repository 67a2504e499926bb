// vantor gauge: a progress window driven from stdin until the input ends.
#include <vantor.h>

#include <iostream>
#include <string>

#include "CommandLine.h"
#include "Commands.h"
#include "GaugeReader.h"
#include "Screen.h"

namespace VantorTool {

int RunGauge(int argc, char** argv) {
    const CommandLine line(argc, argv, {{"--text", true}, {"--percent", true}, {"--keep", false}});
    line.requireOperands(0, 0, "nothing");
    const float start = ParseNumber("--percent", line.value("--percent", "0"), 0, 100);
    const std::string text = line.value("--text");

    Screen screen(line.value("--device", "/dev/fb0"));
    // The window holds one line of text above a 15-pixel bar, 5 pixels from each edge.
    const Box box =
        screen.Place(line.value("--geometry"), screen.width() * 3 / 4, screen.cellHeight() + 30);
    if (InitProgress(box.x, box.y, box.width, box.height) != 0)
        throw CommandFailure(kExitNoDisplay, "the progress window does not fit on the screen");
    ShowProgress(text.empty() ? nullptr : text.c_str(), eAlignLeft, start);

    GaugeReader reader;
    GaugeReader::Step step;
    float percent = start;
    std::string input;
    auto show = [&] {
        if (step.moves) percent = step.percent;
        UpdateProgress(step.hasText ? step.text.c_str() : nullptr, eAlignLeft, percent);
    };
    while (std::getline(std::cin, input)) {
        if (reader.Feed(input, step)) show();
    }
    if (reader.Finish(step)) show();
    if (!line.has("--keep")) HideProgress();
    return kExitOk;
}

}  // namespace VantorTool
