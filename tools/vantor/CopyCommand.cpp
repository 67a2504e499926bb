// SPDX-License-Identifier: MIT
// vantor copy: the firmware copy with its progress window.
#include <vantor.h>

#include <cstdio>
#include <memory>

#include "CommandLine.h"
#include "Commands.h"
#include "FirmwareCopy.h"
#include "Screen.h"
#include "StopSignals.h"

namespace VantorTool {

namespace {

// The copy matters more than the picture: without a usable display the file is still
// copied, with a word on stderr, and the status tells how the copy went.
std::unique_ptr<Screen> OpenDisplay(const std::string& device) {
    try {
        return std::make_unique<Screen>(device);
    } catch (const CommandFailure& failure) {
        std::fprintf(stderr, "vantor: %s; copying without a progress window\n", failure.what());
        return nullptr;
    }
}

}  // namespace

int RunCopy(int argc, char** argv) {
    const CommandLine line(argc, argv,
                           {{"--text", true},
                            {"--start", true},
                            {"--share", true},
                            {"--verify", false},
                            {"--keep", false}});
    line.requireOperands(2, 2, "SOURCE and TARGET");
    const float start = ParseNumber("--start", line.value("--start", "0"), 0, 100);
    const float share = ParseNumber("--share", line.value("--share", "100"), 0, 100);
    const std::string text = line.value("--text");
    const char* caption = text.empty() ? nullptr : text.c_str();

    const std::unique_ptr<Screen> screen = OpenDisplay(line.value("--device"));
    if (screen) {
        const Box box = screen->PlaceProgress(line.value("--geometry"));
        InitProgress(box.x, box.y, box.width, box.height);
        ShowProgress(caption, eAlignLeft, start);
    }
    const CopyRequest request{line.operands()[0].c_str(), line.operands()[1].c_str(), caption,
                              share, line.has("--verify")};
    StopSignals stop;
    const int result = CopyImage(request);
    if (screen && !line.has("--keep")) HideProgress();
    // A copy that finished before it could see the signal is done all the same.
    if (result != 0) stop.EndAsAsked();
    return result == 0 ? kExitOk : kExitCopyFailed;
}

}  // namespace VantorTool
