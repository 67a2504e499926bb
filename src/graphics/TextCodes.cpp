// SPDX-License-Identifier: MIT
#include "vantor/TextCodes.h"

#include "Utf8Sequence.h"

namespace Vantor {

eTextEncoding CTextCodes::current = eTextBytes;

eTextEncoding CTextCodes::getEncoding() {
    return current;
}

void CTextCodes::setEncoding(eTextEncoding encoding) {
    current = encoding;
}

// Old Latin-1 text handed over as UTF-8 still reads right: a byte that starts no
// well-formed sequence is the Latin-1 character of the same value.
std::u32string CTextCodes::Decode(const char* text, eTextEncoding encoding) {
    std::u32string codes;
    if (text == nullptr) return codes;
    const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
    while (*p != 0) {
        char32_t code = *p;
        const int length = encoding == eTextUtf8 ? Utf8SequenceAt(p, code) : 0;
        if (length == 0) code = *p;
        codes.push_back(code);
        p += length > 0 ? length : 1;
    }
    return codes;
}

size_t CTextCodes::Count(const char* text, eTextEncoding encoding) {
    size_t count = 0;
    if (text == nullptr) return count;
    const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
    while (*p != 0) {
        char32_t code = 0;
        const int length = encoding == eTextUtf8 ? Utf8SequenceAt(p, code) : 0;
        p += length > 0 ? length : 1;
        ++count;
    }
    return count;
}

}  // namespace Vantor
