// SPDX-License-Identifier: MIT
#ifndef VANTOR_TOOL_KEY_CHOICE_H
#define VANTOR_TOOL_KEY_CHOICE_H

namespace VantorTool {

class CommandLine;

// Hands the key devices and key codes the script chose (--keypad and --keycodes, or else
// VANTOR_KEYPAD and VANTOR_KEYCODES) to the library before any keypad is opened. Throws
// a UsageError for a list or set the library refuses.
void ChooseKeys(const CommandLine& args);

}  // namespace VantorTool

#endif
