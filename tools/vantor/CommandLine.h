// SPDX-License-Identifier: MIT
// The arguments of one subcommand: its options (each known in advance, with or without
// a value) and its operands. Anything unknown or incomplete is a UsageError.
#ifndef VANTOR_TOOL_COMMAND_LINE_H
#define VANTOR_TOOL_COMMAND_LINE_H

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace VantorTool {

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct OptionRule {
    const char* name;  // with its dashes: "--title"
    bool takesValue;
};

class CommandLine {
  public:
    // argv[0] is the subcommand's name; the common options are always accepted.
    CommandLine(int argc, char** argv, const std::vector<OptionRule>& accepted);

    bool has(const std::string& name) const { return values.count(name) != 0; }
    std::string value(const std::string& name, const std::string& fallback = "") const;
    const std::vector<std::string>& operands() const { return positional; }
    const std::string& command() const { return name; }

    // Fails unless the operand count lies in [least, most].
    void requireOperands(size_t least, size_t most, const char* what) const;

  private:
    const OptionRule* find(const std::string& option) const;

    std::string name;
    std::vector<OptionRule> rules;
    std::map<std::string, std::string> values;
    std::vector<std::string> positional;
};

}  // namespace VantorTool

#endif
