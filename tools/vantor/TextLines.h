// SPDX-License-Identifier: MIT
// Text from the command line as screen lines: each argument starts a line, "\n" (the
// two characters, as whiptail takes them, or a real newline) starts another, and a
// line longer than the box is wrapped at blanks, or cut where a word alone is too long.
// Lines are counted in characters of UTF-8 text.
#ifndef VANTOR_TOOL_TEXT_LINES_H
#define VANTOR_TOOL_TEXT_LINES_H

#include <string>
#include <vector>

namespace VantorTool {

std::vector<std::string> SplitLines(const std::vector<std::string>& arguments);
std::vector<std::string> WrapLines(const std::vector<std::string>& lines, size_t columns);

}  // namespace VantorTool

#endif
