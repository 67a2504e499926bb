// SPDX-License-Identifier: MIT
// The exit statuses of the vantor command. Scripts test these numbers, so they never
// change meaning; 3 stays unused because vantor-sim stops a program whose key script
// ran out with 3, and a test must be able to tell that apart from an answer.
#ifndef VANTOR_TOOL_EXIT_STATUS_H
#define VANTOR_TOOL_EXIT_STATUS_H

#include <stdexcept>
#include <string>

namespace VantorTool {

enum ExitStatus {
    kExitOk = 0,          // a choice, Yes/Ok, a key read, a copy done
    kExitDeclined = 1,    // back key, No/Cancel button, key time-out
    kExitUsage = 2,       // bad arguments
    kExitCancelKey = 4,   // the cancel key left a menu or dialog
    kExitHomeKey = 5,     // the home key left a menu or dialog
    kExitCopyFailed = 6,  // the copy failed; the line on stderr says why
    kExitNoKeypad = 7,    // no keypad found, or it went away while waiting
    kExitNoDisplay = 8,   // the display could not be opened or drawn on
    kExitAnswerLost = 9,  // the answer could not be written to stdout
    kExitNoConsole = 10,  // the console's mode may not be changed (not root)
};

// A failure that ends the command with a status of its own and one line on stderr.
struct CommandFailure : std::runtime_error {
    CommandFailure(ExitStatus s, const std::string& message)
        : std::runtime_error(message), status(s) {}
    ExitStatus status;
};

}  // namespace VantorTool

#endif
