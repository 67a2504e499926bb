// SPDX-License-Identifier: MIT
#include "vantor/MenuItem.h"

namespace Vantor {

CMenuItem::CMenuItem(const char* text, CBitmapFont& font, int itemId)
    : CAsciiText(text, font), id(itemId) {}

CMenuItem::CMenuItem(CBitmapFont& font, int itemId) : CAsciiText(font), id(itemId) {}

}  // namespace Vantor
