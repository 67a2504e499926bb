// SPDX-License-Identifier: MIT
#include "vantor/TextCodes.h"

namespace Vantor {

eTextEncoding CTextCodes::current = eTextBytes;

eTextEncoding CTextCodes::getEncoding() {
    return current;
}

void CTextCodes::setEncoding(eTextEncoding encoding) {
    current = encoding;
}

// The length of the well-formed UTF-8 sequence that starts at `bytes`, with its code
// point; 0 when none starts there. Overlong forms, surrogates and code points past
// U+10FFFF are not well formed. A sequence cut short by the terminator stops at the
// zero byte, which is no continuation byte.
int CTextCodes::SequenceAt(const unsigned char* bytes, char32_t& code) {
    static const char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    const unsigned char lead = bytes[0];
    int length = 0;
    if (lead < 0x80) {
        code = lead;
        return 1;
    } else if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2, code = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3, code = lead & 0x0F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4, code = lead & 0x07;
    } else {
        return 0;
    }
    for (int i = 1; i < length; ++i) {
        if ((bytes[i] & 0xC0) != 0x80) return 0;
        code = (code << 6) | (bytes[i] & 0x3F);
    }
    if (code < kLeast[length] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return 0;
    return length;
}

// Old Latin-1 text handed over as UTF-8 still reads right: a byte that starts no
// well-formed sequence is the Latin-1 character of the same value.
std::u32string CTextCodes::Decode(const char* text, eTextEncoding encoding) {
    std::u32string codes;
    if (text == nullptr) return codes;
    const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
    while (*p != 0) {
        char32_t code = *p;
        const int length = encoding == eTextUtf8 ? SequenceAt(p, code) : 0;
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
        const int length = encoding == eTextUtf8 ? SequenceAt(p, code) : 0;
        p += length > 0 ? length : 1;
        ++count;
    }
    return count;
}

}  // namespace Vantor
