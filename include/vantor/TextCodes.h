// SPDX-License-Identifier: MIT
#ifndef VANTOR_TEXTCODES_H
#define VANTOR_TEXTCODES_H

#include <string>

#include "vantor/Export.h"

namespace Vantor {

enum eTextEncoding {
    eTextBytes = 0,  // every byte is one glyph code
    eTextUtf8 = 1,   // UTF-8; a byte outside a valid sequence stands for itself (Latin-1)
};

// Turns the strings a host hands over into character codes. The encoding is chosen once
// for the whole process; a text is decoded when it is handed over, so changing the
// encoding later does not change the meaning of texts already made.
class VANTOR_API CTextCodes {
  public:
    static eTextEncoding getEncoding();
    static void setEncoding(eTextEncoding encoding);

    static std::u32string Decode(const char* text, eTextEncoding encoding);
    // How many characters, and so cells, the text takes.
    static size_t Count(const char* text, eTextEncoding encoding);

    // Below 0x20 and 0x7F: in UTF-8 text these take a cell but show nothing unless the
    // font draws them.
    static bool IsControl(char32_t code) { return code < 0x20 || code == 0x7F; }

  private:
    static eTextEncoding current;
};

}  // namespace Vantor

#endif
