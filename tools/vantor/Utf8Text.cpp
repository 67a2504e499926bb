// SPDX-License-Identifier: MIT
#include "Utf8Text.h"

#include "graphics/Utf8Sequence.h"

namespace VantorTool {

namespace {

// Bytes in the character that starts at `at`: a well-formed sequence as the library
// reads it, else the one byte. The string's terminator ends any sequence cut short.
size_t LengthAt(const std::string& text, size_t at) {
    char32_t code = 0;
    const int length =
        Vantor::Utf8SequenceAt(reinterpret_cast<const unsigned char*>(text.c_str()) + at, code);
    return length > 0 ? size_t(length) : 1;
}

}  // namespace

size_t OffsetOfCharacter(const std::string& text, size_t count) {
    size_t at = 0;
    for (size_t n = 0; n < count && at < text.size(); ++n) at += LengthAt(text, at);
    return at;
}

size_t Characters(const std::string& text) {
    size_t count = 0;
    for (size_t at = 0; at < text.size(); at += LengthAt(text, at)) ++count;
    return count;
}

std::string FirstCharacters(const std::string& text, size_t count) {
    return text.substr(0, OffsetOfCharacter(text, count));
}

}  // namespace VantorTool
