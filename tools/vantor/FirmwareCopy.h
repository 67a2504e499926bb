// SPDX-License-Identifier: MIT
// The one place where the command hands a file to the library's copy.
#ifndef VANTOR_TOOL_FIRMWARE_COPY_H
#define VANTOR_TOOL_FIRMWARE_COPY_H

namespace VantorTool {

struct CopyRequest {
    const char* source;
    const char* target;
    const char* text;  // the window's caption, or nullptr to keep it
    float share;       // percent of the bar this copy moves
    bool verify;       // read the target back and compare it with the source
};

// The library's result: 0 copied, below 0 failed (one line on stderr says why).
int CopyImage(const CopyRequest& request);

}  // namespace VantorTool

#endif
