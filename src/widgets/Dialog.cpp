// SPDX-License-Identifier: MIT
#include "vantor/Dialog.h"

#include <algorithm>
#include <climits>

#include "MenuLayout.h"
#include "vantor/Menu.h"

namespace Vantor {

namespace {

// The buttons sit in the box's lower right corner; a box placed at the far negative
// end of the int range puts them as far as an int goes rather than wrapping round.
int Before(int corner, int extent) {
    return static_cast<int>(std::max<long long>(static_cast<long long>(corner) - extent, INT_MIN));
}

}  // namespace

CDialog::CDialog(CBitmapFont& f, CKeypad& k, int x, int y, int width, int height, eDialogType type)
    : CCanvas(x, y, width, height), keypad(k), font(f), dialogType(type), pMenu(nullptr) {}

CDialog::~CDialog() {
    delete pMenu;
    pMenu = nullptr;
}

void CDialog::AddButtons() {
    for (int n = 0; ButtonLabel(dialogType, n) != nullptr; ++n)
        pMenu->AddItem(n + 1, ButtonLabel(dialogType, n),
                       ButtonLabel(dialogType, n + 1) == nullptr);
}

// The button row sits in the dialog's bottom-right corner, one pixel in from its
// right and bottom edges.
int CDialog::CreateMenu() {
    delete pMenu;
    pMenu = nullptr;
    pMenu = new CMenu(font, keypad);
    pMenu->orientation = eMenuHorizontal;
    AddButtons();
    pMenu->Draw();
    pMenu->Autoresize(CMenuLayout::kBorder);
    pMenu->setOffset(Before(frame.bottomRight.x, pMenu->getWidth()),
                     Before(frame.bottomRight.y, pMenu->getHeight()));
    return 0;
}

// Nothing ever saves the screen under a dialog, so leaving it paints its box black.
int CDialog::QueryDialog(const CScreen& screen, float timeout) {
    if (dialogType != 0) CreateMenu();
    Refresh();
    Paint(screen);
    if (dialogType == 0) return 0;
    const int result = pMenu->QueryMenu(screen, timeout);
    RestoreBackground(screen);
    return result;
}

int CDialog::QueryDialog(unsigned int* screen, int screenWidth, int screenHeight, float timeout) {
    return QueryDialog(CScreen(screen, screenWidth, screenHeight), timeout);
}

}  // namespace Vantor
