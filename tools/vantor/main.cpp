// vantor: the library's menus, dialogs, progress window, text, keys and file copy as a
// command for shell scripts. It uses only the library's C interface.
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include "CommandLine.h"
#include "Commands.h"
#include "ExitStatus.h"

using namespace VantorTool;

namespace {

struct Command {
    const char* name;
    int (*run)(int argc, char** argv);
};

const Command kCommands[] = {
    {"menu", RunMenu},       {"yesno", RunYesNo}, {"ok", RunOk},     {"text", RunText},
    {"clear", RunClear},     {"gauge", RunGauge}, {"copy", RunCopy}, {"key", RunKey},
    {"console", RunConsole},  // the kernel console, across the commands of a script
};

bool AsksForHelp(int argc, char** argv) {
    for (int i = 1; i < argc && std::strcmp(argv[i], "--") != 0; ++i) {
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) return true;
    }
    return false;
}

int Run(int argc, char** argv) {
    if (argc < 2) throw UsageError("no command given");
    for (const Command& command : kCommands) {
        if (std::strcmp(argv[1], command.name) == 0) return command.run(argc - 1, argv + 1);
    }
    throw UsageError(std::string("unknown command \"") + argv[1] + "\"");
}

}  // namespace

int main(int argc, char** argv) {
    if (AsksForHelp(argc, argv)) {
        std::fputs(kHelp, stdout);
        return kExitOk;
    }
    try {
        return Run(argc, argv);
    } catch (const UsageError& error) {
        std::fprintf(stderr, "vantor: %s\nTry 'vantor --help' for the commands and examples.\n",
                     error.what());
        return kExitUsage;
    } catch (const CommandFailure& failure) {
        std::fprintf(stderr, "vantor: %s\n", failure.what());
        return failure.status;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vantor: %s\n", error.what());
        return kExitNoDisplay;
    }
}
