// SPDX-License-Identifier: MIT
#include "Screen.h"

#include <fcntl.h>
#include <linux/fb.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <vantor.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "DisplayChoice.h"
#include "io/UniqueFd.h"
#include "vantor/Progress.h"

namespace VantorTool {

namespace {

using Vantor::UniqueFd;

// The room the front end leaves between the caption and the bar; its own choice.
const int kCaptionToBar = 5;

// The library reports framebuffer faults on stdout. A script reads our answers from
// stdout (choice=$(vantor menu ...)), so those lines are sent to stderr instead.
void* OpenFramebufferKeepingStdout(const std::string& device) {
    std::fflush(stdout);
    // Ours alone, so close-on-exec like every descriptor the front end opens for itself.
    const UniqueFd saved(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0));
    if (saved.IsOpen()) dup2(STDERR_FILENO, STDOUT_FILENO);
    void* state = InitFramebuffer(device.c_str());
    std::fflush(stdout);
    if (saved.IsOpen()) dup2(saved.Get(), STDOUT_FILENO);
    return state;
}

// The library's own lines say which step failed but not the system's reason; asking
// the device ourselves finds it (a missing node, no permission, not a framebuffer).
std::string WhyUnusable(const std::string& device) {
    const UniqueFd fd = UniqueFd::Open(device.c_str(), O_RDWR | O_NONBLOCK);
    if (!fd.IsOpen()) return std::strerror(errno);
    struct fb_var_screeninfo screen;
    const bool framebuffer = ioctl(fd.Get(), FBIOGET_VSCREENINFO, &screen) == 0;
    const int error = errno;
    if (framebuffer) return "the library could not map it or load its fonts (see above)";
    // A DRM card answers no framebuffer request; the library's own line says what it found.
    if (device.rfind("/dev/dri/", 0) == 0)
        return "the library could not drive the card (see above)";
    return std::string("not a framebuffer (") + std::strerror(error) + ")";
}

}  // namespace

Screen::Screen(const std::string& device) {
    std::string tried;
    bool opened = false;
    for (const std::string& candidate : DisplayCandidates(device)) {
        tried = candidate;
        if ((opened = OpenFramebufferKeepingStdout(candidate) != nullptr)) break;
    }
    if (!opened) {
        throw CommandFailure(kExitNoDisplay,
                             "cannot use the display " + tried + ": " + WhyUnusable(tried));
    }
    if (setRotation(ChosenRotation()) != 0 || getScreenSize(&screenWidth, &screenHeight) != 0 ||
        getFontSize(0, &cellW, &cellH) != 0) {
        throw CommandFailure(kExitNoDisplay, "cannot use the display " + tried);
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

Box Screen::PlaceProgress(const std::string& geometry) const {
    using Vantor::CProgress;
    const int height =
        CProgress::kInset + cellH + kCaptionToBar + CProgress::kBarHeight + CProgress::kInset;
    return Place(geometry, screenWidth * 3 / 4, height);
}

ExitStatus StatusOfLeavingKey(int answer) {
    switch (answer) {
        case VANTOR_MENU_BACK:
            return kExitDeclined;
        case VANTOR_MENU_CANCEL:
            return kExitCancelKey;
        case VANTOR_MENU_HOME:
            return kExitHomeKey;
        case -2:
            throw CommandFailure(kExitNoKeypad, "the keypad went away while waiting for a key");
        default:
            throw CommandFailure(kExitNoDisplay, "the library refused the widget");
    }
}

}  // namespace VantorTool
