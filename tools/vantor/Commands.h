// SPDX-License-Identifier: MIT
// One function per subcommand. Each takes its own argv (argv[0] is the subcommand's
// name), returns an ExitStatus, and throws UsageError or CommandFailure.
#ifndef VANTOR_TOOL_COMMANDS_H
#define VANTOR_TOOL_COMMANDS_H

namespace VantorTool {

int RunMenu(int argc, char** argv);
int RunYesNo(int argc, char** argv);
int RunOk(int argc, char** argv);
int RunText(int argc, char** argv);
int RunClear(int argc, char** argv);
int RunGauge(int argc, char** argv);
int RunCopy(int argc, char** argv);
int RunKey(int argc, char** argv);
int RunConsole(int argc, char** argv);

extern const char kHelp[];

}  // namespace VantorTool

#endif
