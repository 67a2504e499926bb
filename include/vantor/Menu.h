#ifndef VANTOR_MENU_H
#define VANTOR_MENU_H

#include "vantor/Canvas.h"
#include "vantor/Enums.h"
#include "vantor/Export.h"

namespace Vantor {

class CBitmapFont;
class CKeypad;
class CMenuItem;

// Text entries in a column or a row; the selected one is shown in inverse colours.
// A query paints the menu straight onto the screen, steps through the entries with
// the keys, and puts the screen back when the user leaves.
class VANTOR_API CMenu : public CCanvas {
  public:
    CMenu(CBitmapFont& font, CKeypad& keypad);
    ~CMenu() override;

    int AddItem(int id, const char* text, bool selected);
    int Draw();
    int AdjustColors();
    // The chosen entry's id, 0, -1, -3 or -4; -2 when the keypad lost its device.
    int QueryMenu(const CScreen& screen, float timeout);
    int QueryMenu(unsigned int* screen, int screenWidth, int screenHeight, float timeout);
    // Deletes the entries like the canvas does, and forgets the selection with them.
    void Clear();

    CMenuItem* pSelectedItem;
    CBitmapFont& font;
    CKeypad& keypad;
    eMenuOrientation orientation;
    eAlignMode itemAlignment;

  private:
    int WaitForChoice(const CScreen& screen, float timeout);
    void PaintMenu(const CScreen& screen);
    void SelectNeighbour(bool forward);
    int SelectedId() const;
};

}  // namespace Vantor

#endif
