// SPDX-License-Identifier: MIT
#include "VirtualConsole.h"

#include <errno.h>
#include <linux/kd.h>
#include <stdint.h>
#include <unistd.h>

namespace VantorPlatform {

const char VirtualConsole::kPath[] = "/dev/tty0";

// As the kernel does: KDGETMODE writes an int, KDSETMODE takes the mode as the argument
// itself and refuses anything but text and graphics.
bool VirtualConsole::Answer(int fd, unsigned long request, void* argument, int& error) {
    if (request == KDGETMODE) {
        char digit = '0';
        if (pread(fd, &digit, 1, 0) != 1) digit = '0';
        *static_cast<int*>(argument) = digit - '0';
        return true;
    }
    if (request != KDSETMODE) return false;
    const intptr_t mode = reinterpret_cast<intptr_t>(argument);
    if (mode != KD_TEXT && mode != KD_GRAPHICS) {
        error = EINVAL;
        return true;
    }
    const char digit = char('0' + mode);
    if (pwrite(fd, &digit, 1, 0) != 1) error = EIO;
    return true;
}

}  // namespace VantorPlatform
