// SPDX-License-Identifier: MIT
// Command-line text is UTF-8, drawn one cell per character; a byte that is not part of a
// well-formed sequence is a character of its own (its Latin-1 letter), as the library
// draws it. These measure and cut text by characters, never inside one.
#ifndef VANTOR_TOOL_UTF8_TEXT_H
#define VANTOR_TOOL_UTF8_TEXT_H

#include <string>

namespace VantorTool {

size_t Characters(const std::string& text);
// The first `count` characters of text (all of it when it has fewer).
std::string FirstCharacters(const std::string& text, size_t count);
// The byte offset where character number `count` starts (the size when it has fewer).
size_t OffsetOfCharacter(const std::string& text, size_t count);

}  // namespace VantorTool

#endif
