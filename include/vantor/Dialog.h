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

    // The buttons a dialog of this type shows, left to right and NULL-terminated (none
    // for an unknown type); they answer 1, 2 in that order and the last is selected
    // first. Also what a host lays out by when it measures the row with getMenuSize.
    static const char* const* Buttons(eDialogType type) {
        static const char* const kOk[] = {"Ok", 0};
        static const char* const kOkCancel[] = {"Ok", "Cancel", 0};
        static const char* const kYesNo[] = {"Yes", "No", 0};
        static const char* const kNone[] = {0};
        switch (type) {
            case eDialogOk:
                return kOk;
            case eDialogOkCancel:
                return kOkCancel;
            case eDialogYesNo:
                return kYesNo;
            default:
                return kNone;
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
