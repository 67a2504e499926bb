// SPDX-License-Identifier: MIT
#include "TextLines.h"

#include "Utf8Text.h"

namespace VantorTool {

namespace {

void SplitInto(const std::string& text, std::vector<std::string>& lines) {
    std::string line;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool escaped = text[i] == '\\' && i + 1 < text.size() && text[i + 1] == 'n';
        if (text[i] == '\n' || escaped) {
            lines.push_back(line);
            line.clear();
            i += escaped ? 1 : 0;
        } else {
            line += text[i];
        }
    }
    lines.push_back(line);
}

void WrapInto(std::string line, size_t columns, std::vector<std::string>& lines) {
    while (Characters(line) > columns) {
        const size_t limit = OffsetOfCharacter(line, columns);
        size_t cut = line.rfind(' ', limit);
        if (cut == std::string::npos || cut == 0) cut = limit;
        lines.push_back(line.substr(0, cut));
        const size_t next = line.find_first_not_of(' ', cut);
        line = next == std::string::npos ? "" : line.substr(next);
    }
    lines.push_back(line);
}

}  // namespace

std::vector<std::string> SplitLines(const std::vector<std::string>& arguments) {
    std::vector<std::string> lines;
    for (const std::string& argument : arguments) SplitInto(argument, lines);
    return lines;
}

std::vector<std::string> WrapLines(const std::vector<std::string>& lines, size_t columns) {
    std::vector<std::string> wrapped;
    for (const std::string& line : lines) WrapInto(line, columns < 1 ? 1 : columns, wrapped);
    return wrapped;
}

}  // namespace VantorTool
