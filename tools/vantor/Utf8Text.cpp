// SPDX-License-Identifier: MIT
#include "Utf8Text.h"

namespace VantorTool {

namespace {

// Bytes in the character that starts at `at`: a well-formed sequence (no overlong form,
// no surrogate, nothing past U+10FFFF), else the one byte.
size_t LengthAt(const std::string& text, size_t at) {
    const unsigned char lead = static_cast<unsigned char>(text[at]);
    size_t length = lead < 0x80 ? 1 : lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (lead > 0xF4) length = 0;
    if (length <= 1 || at + length > text.size()) return 1;
    unsigned long code = lead & (0xFF >> (length + 1));
    for (size_t i = 1; i < length; ++i) {
        const unsigned char next = static_cast<unsigned char>(text[at + i]);
        if ((next & 0xC0) != 0x80) return 1;
        code = (code << 6) | (next & 0x3F);
    }
    const unsigned long least[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool wellFormed =
        code >= least[length] && code <= 0x10FFFF && !(code >= 0xD800 && code <= 0xDFFF);
    return wellFormed ? length : 1;
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
