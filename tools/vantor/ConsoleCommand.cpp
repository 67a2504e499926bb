// SPDX-License-Identifier: MIT
// vantor console off|on: the kernel console kept off the picture across the commands of
// a script, and given back at its end.
#include <vantor.h>

#include "CommandLine.h"
#include "Commands.h"
#include "ExitStatus.h"

namespace VantorTool {

// "off" outlives this command, or the console would repaint itself over the picture
// between two commands. Where there is no virtual terminal there is no console to keep
// off the picture, so that is no failure.
int RunConsole(int argc, char** argv) {
    const CommandLine line(argc, argv, {});
    line.requireOperands(1, 1, "off or on");
    const std::string& what = line.operands()[0];
    if (what != "off" && what != "on") throw UsageError("console: give off or on, not " + what);
    const int result =
        setConsoleGraphics(what == "off" ? VANTOR_CONSOLE_OFF_KEPT : VANTOR_CONSOLE_ON);
    if (result == -13) {
        throw CommandFailure(kExitNoConsole,
                             "may not change the console mode of /dev/tty0 (it takes root)");
    }
    return kExitOk;
}

}  // namespace VantorTool
