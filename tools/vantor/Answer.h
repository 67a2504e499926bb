// SPDX-License-Identifier: MIT
// The answer a script reads from stdout: written whole, or the command fails, since a
// script that finds no answer must not take the exit status 0 for one.
#ifndef VANTOR_TOOL_ANSWER_H
#define VANTOR_TOOL_ANSWER_H

#include <string>

namespace VantorTool {

// Run first thing: a closed stdout is kept occupied (/dev/null) so that no device the
// command opens takes its number, and remembered as a failure for WriteAnswer.
void GuardStandardStreams();

// Writes all of text to stdout; 0 or the errno that stopped it.
int WriteOut(const std::string& text);

// Writes the line and its newline to stdout; throws CommandFailure(kExitAnswerLost)
// with the system's reason when it cannot.
void WriteAnswer(const std::string& line);

}  // namespace VantorTool

#endif
