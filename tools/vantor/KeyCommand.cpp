// SPDX-License-Identifier: MIT
// vantor key: one key press, by name, on stdout.
#include <vantor.h>

#include <chrono>
#include <cstdio>

#include "Answer.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Screen.h"

namespace VantorTool {

namespace {

const char* KeyName(int code) {
    switch (code) {
        case VANTOR_KEY_UP:
            return "up";
        case VANTOR_KEY_DOWN:
            return "down";
        case VANTOR_KEY_OK:
            return "ok";
        case VANTOR_KEY_SELECT:
            return "select";
        case VANTOR_KEY_BACK:
            return "back";
        case VANTOR_KEY_CANCEL:
            return "cancel";
        case VANTOR_KEY_HOME:
            return "home";
        default:
            return nullptr;
    }
}

}  // namespace

// WaitKey also answers -1 for a key's release and for keys it does not know, so it is
// asked again until a named key comes or the whole time-out has passed.
int RunKey(int argc, char** argv) {
    using Clock = std::chrono::steady_clock;
    const CommandLine line(argc, argv, {{"--timeout", true}});
    line.requireOperands(0, 0, "nothing");
    const bool forever = !line.has("--timeout");
    const float timeout = forever ? 0 : ParseNumber("--timeout", line.value("--timeout"), 0, 1e6);
    Screen::OpenKeypad();

    const Clock::time_point deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                                          std::chrono::duration<float>(timeout));
    float left = timeout;
    for (;;) {
        const char* name = KeyName(WaitKey(forever ? 3600.0f : left));
        if (name != nullptr) {
            WriteAnswer(name);
            return kExitOk;
        }
        left = std::chrono::duration<float>(deadline - Clock::now()).count();
        if (!forever && left <= 0) return kExitDeclined;
    }
}

}  // namespace VantorTool
