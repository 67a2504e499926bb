// SPDX-License-Identifier: MIT
#ifndef VANTOR_MENUITEM_H
#define VANTOR_MENUITEM_H

#include "vantor/AsciiText.h"
#include "vantor/Export.h"

namespace Vantor {

// A menu entry: a text line that carries the id a choice of it returns.
class VANTOR_API CMenuItem : public CAsciiText {
  public:
    CMenuItem(const char* text, CBitmapFont& font, int itemId);
    CMenuItem(CBitmapFont& font, int itemId);
    ~CMenuItem() override = default;

    int id;
};

}  // namespace Vantor

#endif
