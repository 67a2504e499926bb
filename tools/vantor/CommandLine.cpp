// SPDX-License-Identifier: MIT
#include "CommandLine.h"

#include <cstdlib>

#include "KeyChoice.h"
#include "Values.h"

namespace VantorTool {

namespace {

const std::vector<OptionRule> kCommon = {
    {"--device", true}, {"--geometry", true}, {"--help", false},   {"-h", false},
    {"--rotate", true}, {"--keypad", true},   {"--keycodes", true}};

}  // namespace

CommandLine::CommandLine(int argc, char** argv, const std::vector<OptionRule>& accepted)
    : name(argv[0]), rules(kCommon) {
    rules.insert(rules.end(), accepted.begin(), accepted.end());
    bool optionsEnded = false;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        // A lone "-" is an operand; any other word with a leading dash is an option.
        if (optionsEnded || arg.size() < 2 || arg[0] != '-') {
            positional.push_back(arg);
            continue;
        }
        if (arg == "--") {
            optionsEnded = true;
            continue;
        }
        std::string inlineValue;
        const size_t equals = arg.find('=');
        const bool hasInline = arg.rfind("--", 0) == 0 && equals != std::string::npos;
        if (hasInline) {
            inlineValue = arg.substr(equals + 1);
            arg.resize(equals);
        }
        const OptionRule* rule = find(arg);
        if (rule == nullptr) throw UsageError(name + ": unknown option " + arg);
        if (!rule->takesValue) {
            if (hasInline) throw UsageError(name + ": " + arg + " takes no value");
            values[arg] = "";
        } else if (hasInline) {
            values[arg] = inlineValue;
        } else {
            if (i + 1 >= argc) throw UsageError(name + ": " + arg + " needs a value");
            values[arg] = argv[++i];
        }
    }
    // Checked now so that a bad box is a usage error even when the display is missing.
    if (has("--geometry")) ParseBox("--geometry", value("--geometry"));
    // Handed to the library at once, so that every later InitKeypad uses them.
    ChooseKeys(*this);
    // --rotate stands for VANTOR_ROTATION in this process, which the display reads.
    if (has("--rotate")) {
        ParseRotation("--rotate", value("--rotate"));
        setenv("VANTOR_ROTATION", value("--rotate").c_str(), 1);
    }
    ChosenRotation();
}

std::string CommandLine::value(const std::string& option, const std::string& fallback) const {
    const auto found = values.find(option);
    return found == values.end() ? fallback : found->second;
}

void CommandLine::requireOperands(size_t least, size_t most, const char* what) const {
    if (positional.size() < least) throw UsageError(name + ": missing " + what);
    if (positional.size() > most)
        throw UsageError(name + ": unexpected argument \"" + positional[most] + "\"");
}

const OptionRule* CommandLine::find(const std::string& option) const {
    for (const OptionRule& rule : rules) {
        if (option == rule.name) return &rule;
    }
    return nullptr;
}

}  // namespace VantorTool
