// SPDX-License-Identifier: MIT
#ifndef VANTOR_DIALOG_H
#define VANTOR_DIALOG_H

#include "vantor/Canvas.h"
#include "vantor/Enums.h"
#include "vantor/Export.h"

namespace Vantor {

class CBitmapFont;
class CKeypad;
class CMenu;

// A message box of fixed place and size whose text lines are objects of its canvas,
// with an optional row of buttons in its bottom-right corner.
class VANTOR_API CDialog : public CCanvas {
  public:
    CDialog(CBitmapFont& font, CKeypad& keypad, int x, int y, int width, int height,
            eDialogType type);
    ~CDialog() override;

    int CreateMenu();
    // 0 for type 0, else what the button menu's query answers (-2: keypad device lost).
    int QueryDialog(const CScreen& screen, float timeout);
    int QueryDialog(unsigned int* screen, int screenWidth, int screenHeight, float timeout);

    CKeypad& keypad;
    CBitmapFont& font;
    eDialogType dialogType;
    CMenu* pMenu;

  private:
    void AddButtons();
};

}  // namespace Vantor

#endif
