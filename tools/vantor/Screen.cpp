#include "Screen.h"

#include <unistd.h>
#include <vantor.h>

#include <algorithm>
#include <cstdio>

namespace VantorTool {

namespace {

// The library reports framebuffer faults on stdout. A script reads our answers from
// stdout (choice=$(vantor menu ...)), so those lines are sent to stderr instead.
void* OpenFramebufferKeepingStdout(const std::string& device) {
    std::fflush(stdout);
    const int saved = dup(STDOUT_FILENO);
    if (saved >= 0) dup2(STDERR_FILENO, STDOUT_FILENO);
    void* state = InitFramebuffer(device.c_str());
    std::fflush(stdout);
    if (saved >= 0) {
        dup2(saved, STDOUT_FILENO);
        close(saved);
    }
    return state;
}

}  // namespace

Screen::Screen(const std::string& device) {
    const int rotation = ChosenRotation();
    if (OpenFramebufferKeepingStdout(device) == nullptr || setRotation(rotation) != 0 ||
        getScreenSize(&screenWidth, &screenHeight) != 0 || getFontSize(0, &cellW, &cellH) != 0) {
        throw CommandFailure(kExitNoDisplay, "cannot use the display " + device);
    }
}

void Screen::OpenKeypad() {
    if (InitKeypad() != 0)
        throw CommandFailure(kExitNoKeypad,
                             "no keypad: no key device could be opened (tca8418, or see --keypad)");
}

Box Screen::Place(const std::string& geometry, int boxWidth, int boxHeight) const {
    if (!geometry.empty()) return ParseBox("--geometry", geometry);
    Box box;
    box.width = std::max(1, std::min(boxWidth, screenWidth));
    box.height = std::max(1, std::min(boxHeight, screenHeight));
    box.x = (screenWidth - box.width) / 2;
    box.y = (screenHeight - box.height) / 2;
    return box;
}

ExitStatus StatusOfLeavingKey(int answer) {
    switch (answer) {
        case 0:
            return kExitDeclined;
        case -3:
            return kExitCancelKey;
        case -4:
            return kExitHomeKey;
        case -2:
            throw CommandFailure(kExitNoKeypad, "the keypad went away while waiting for a key");
        default:
            throw CommandFailure(kExitNoDisplay, "the library refused the widget");
    }
}

}  // namespace VantorTool
