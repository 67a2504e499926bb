// SPDX-License-Identifier: MIT
#ifndef VANTOR_CONSOLE_H
#define VANTOR_CONSOLE_H

namespace Vantor {

// The kernel's text console kept off the picture: the foreground virtual terminal is
// put into graphics mode, so fbcon neither blinks its cursor nor prints messages over
// our pixels. Nothing here runs unless a host asks.
class CConsole {
  public:
    // One of the VANTOR_CONSOLE_* modes; the result of setConsoleGraphics.
    static int Set(int mode);
    // Puts back the mode this process found, if it holds the console off, and forgets
    // it. Only atomics, getpid, ioctl and close: the crash handler calls it.
    static void GiveBack();
};

}  // namespace Vantor

#endif
