// SPDX-License-Identifier: MIT
#include "KeyChoice.h"

#include <vantor.h>

#include <cstdlib>
#include <string>

#include "CommandLine.h"

namespace VantorTool {

namespace {

// The option's value, or else the variable's; where it came from names it in messages.
std::string Choice(const CommandLine& args, const char* option, const char* variable,
                   std::string& source) {
    source = option;
    if (args.has(option)) return args.value(option);
    source = variable;
    const char* value = std::getenv(variable);
    return value == nullptr ? "" : value;
}

int CodeSet(const std::string& name) {
    if (name.empty() || name == "tca8418") return VANTOR_KEYCODES_TCA8418;
    if (name == "common") return VANTOR_KEYCODES_COMMON;
    return -1;
}

}  // namespace

void ChooseKeys(const CommandLine& args) {
    std::string source;
    const std::string devices = Choice(args, "--keypad", "VANTOR_KEYPAD", source);
    if (setKeyDevices(devices.c_str()) != 0) {
        throw UsageError(args.command() + ": " + source + " \"" + devices +
                         "\" is not a list of at most 16 devices of at most 255 bytes each");
    }
    const std::string codes = Choice(args, "--keycodes", "VANTOR_KEYCODES", source);
    if (resetKeyCodes(CodeSet(codes)) != 0) {
        throw UsageError(args.command() + ": " + source + " \"" + codes +
                         "\" is not tca8418 or common");
    }
}

}  // namespace VantorTool
