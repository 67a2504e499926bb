// SPDX-License-Identifier: MIT
// vantor: the library's menus, dialogs, progress window, text, keys and file copy as a
// command for shell scripts. It uses only the library's C interface.
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include <vantor.h>

#include "Answer.h"
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

bool AsksFor(int argc, char** argv, const char* option, const char* shortOption) {
    for (int i = 1; i < argc && std::strcmp(argv[i], "--") != 0; ++i) {
        if (std::strcmp(argv[i], option) == 0 || std::strcmp(argv[i], shortOption) == 0)
            return true;
    }
    return false;
}

// Help and version go to stdout like an answer, and a failure to write them is one.
int Print(const char* text) {
    const int error = WriteOut(text);
    if (error == 0) return kExitOk;
    std::fprintf(stderr, "vantor: cannot write to standard output: %s\n", std::strerror(error));
    return kExitAnswerLost;
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
    GuardStandardStreams();
    if (argc == 2 && (std::strcmp(argv[1], "--version") == 0 || std::strcmp(argv[1], "-V") == 0))
        return Print("vantor " VANTOR_VERSION "\n");
    if (AsksFor(argc, argv, "--help", "-h")) return Print(kHelp);
    // Arguments, titles and gauge captions come from shells and editors that write UTF-8.
    setTextEncoding(VANTOR_TEXT_UTF8);
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
