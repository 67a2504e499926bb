// SPDX-License-Identifier: MIT
// The C call that chooses how the library reads the text it is handed.
#include "vantor.h"
#include "vantor/TextCodes.h"

int setTextEncoding(int encoding) {
    if (encoding != VANTOR_TEXT_BYTES && encoding != VANTOR_TEXT_UTF8) return -1;
    Vantor::CTextCodes::setEncoding(static_cast<Vantor::eTextEncoding>(encoding));
    return 0;
}
