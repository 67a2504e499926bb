// SPDX-License-Identifier: MIT
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
    // Lays the menu out for a screen of this size, in place of Draw and Autoresize(3).
    // When the entries do not all fit between the menu's top-left corner and the
    // screen's bottom edge (a column) or right edge (a row), the menu becomes a window
    // onto the entries that scrolls with the selection, with a mark at either end that
    // has more entries beyond it. Returns 1 for such a window, 0 for a menu that fits,
    // -1 for an empty one.
    int FitToScreen(int screenWidth, int screenHeight);
    bool IsScrolling() const { return scrolling; }

    CMenuItem* pSelectedItem;
    CBitmapFont& font;
    CKeypad& keypad;
    eMenuOrientation orientation;
    eAlignMode itemAlignment;
    // The corner past which entries scroll when it is nearer than the screen's edges:
    // the right (row) and bottom (column) bound, exclusive, in screen coordinates.
    CPoint scrollLimit;

  private:
    int WaitForChoice(const CScreen& screen, float timeout);
    void PaintMenu(const CScreen& screen);
    void SelectNeighbour(bool forward);
    int SelectedId() const;

    // The scrolling window; see FitToScreen.
    void OpenWindow(long long room);
    void DrawWindow();
    void DrawMarks(bool before, bool after);
    void ShowSelected();
    size_t ShownFrom(size_t first) const;
    size_t SelectedIndex() const;
    long long Extent(CGObj* entry) const;
    long long Gap() const;
    long long EntriesEnd() const;

    bool scrolling = false;  // set by FitToScreen
    size_t firstShown = 0;
    long long windowEnd = 0;  // where the shown entries must end along the menu's axis
};

}  // namespace Vantor

#endif
