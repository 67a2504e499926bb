// SPDX-License-Identifier: MIT
#include "Utf8Sequence.h"

namespace Vantor {

int Utf8SequenceAt(const unsigned char* bytes, char32_t& code) {
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

}  // namespace Vantor
