// SPDX-License-Identifier: MIT
#ifndef VANTOR_UTF8SEQUENCE_H
#define VANTOR_UTF8SEQUENCE_H

namespace Vantor {

// The length of the well-formed UTF-8 sequence that starts at `bytes`, with its code
// point in `code`; 0 when none starts there. Overlong forms, surrogates and code points
// past U+10FFFF are not well formed. A sequence cut short by a zero byte stops there,
// since that is no continuation byte, so nothing past a string's terminator is read.
// The library's text decoder and the shell front end's text measures both count
// characters by this one rule, so a line the front end wraps is the line drawn.
int Utf8SequenceAt(const unsigned char* bytes, char32_t& code);

}  // namespace Vantor

#endif
