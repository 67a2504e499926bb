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

    // The label of button n (from 0, left to right) of a dialog of this type; NULL past
    // the last, and at once for an unknown type. Button n answers n + 1 and the last is
    // selected first. A host that measures the row with getMenuSize asks these labels.
    // (Literals only: static data in an inline function would keep the library from
    // ever being unloaded.)
    static const char* ButtonLabel(eDialogType type, int n) {
        switch (type) {
            case eDialogOk:
                return n == 0 ? "Ok" : 0;
            case eDialogOkCancel:
                return n == 0 ? "Ok" : n == 1 ? "Cancel" : 0;
            case eDialogYesNo:
                return n == 0 ? "Yes" : n == 1 ? "No" : 0;
            default:
                return 0;
        }
    }
    // The text lines start this far right of and below the box's top-left corner.
    static const int kTextInset = 2;

    CKeypad& keypad;
    CBitmapFont& font;
    eDialogType dialogType;
    CMenu* pMenu;

  private:
    void AddButtons();
};

}  // namespace Vantor

#endif
