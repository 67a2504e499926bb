// SPDX-License-Identifier: MIT
#include "vantor/Menu.h"

#include <climits>
#include <iterator>

#include "MenuLayout.h"
#include "vantor.h"
#include "vantor/Keypad.h"
#include "vantor/MenuItem.h"

namespace Vantor {

namespace {

const int kResultKeypadLost = -2;  // what a query answers when its keypad lost its device

const uint32_t kWhite = 0xFFFFFF;
const uint32_t kBlack = 0x000000;

}  // namespace

CMenu::CMenu(CBitmapFont& f, CKeypad& k)
    : CCanvas(),
      pSelectedItem(nullptr),
      font(f),
      keypad(k),
      orientation(eMenuVertical),
      itemAlignment(eAlignLeft),
      scrollLimit(INT_MAX, INT_MAX) {}

CMenu::~CMenu() {
    pSelectedItem = nullptr;
}

int CMenu::AddItem(int id, const char* text, bool selected) {
    CMenuItem* item = new CMenuItem(text, font, id);
    item->setAlignment(itemAlignment);
    objects.push_back(item);
    if (selected) pSelectedItem = item;
    return 0;
}

// Places the entries so they can be measured, and draws them into the canvas.
int CMenu::Draw() {
    if (objects.empty()) return -1;
    if (orientation != eMenuVertical && orientation != eMenuHorizontal) return 0;
    CMenuLayout(orientation).Place(objects);
    for (CGObj* entry : objects) entry->Draw(*this);
    return 0;
}

int CMenu::AdjustColors() {
    if (pSelectedItem == nullptr && !objects.empty()) {
        pSelectedItem = static_cast<CMenuItem*>(objects.front());
    }
    for (CGObj* object : objects) {
        CMenuItem* entry = static_cast<CMenuItem*>(object);
        const bool selected = entry == pSelectedItem;
        entry->foreground = CRGBA24(selected ? kBlack : kWhite);
        entry->background = CRGBA24(selected ? kWhite : kBlack);
    }
    return 0;
}

void CMenu::Clear() {
    pSelectedItem = nullptr;
    scrolling = false;
    firstShown = 0;
    CCanvas::Clear();
}

int CMenu::QueryMenu(const CScreen& screen, float timeout) {
    // An empty menu, or one never sized, has nothing to show and no buffer to show it from.
    if (objects.empty() || pPixels == nullptr) return -1;
    SaveBackground(screen);
    PaintMenu(screen);
    const int result = WaitForChoice(screen, timeout);
    RestoreBackground(screen);
    return result;
}

int CMenu::QueryMenu(unsigned int* screen, int screenWidth, int screenHeight, float timeout) {
    return QueryMenu(CScreen(screen, screenWidth, screenHeight), timeout);
}

void CMenu::PaintMenu(const CScreen& screen) {
    AdjustColors();
    if (scrolling) {
        DrawWindow();
    } else {
        Draw();
    }
    Paint(screen);
}

// The time-out bounds each single wait only: a wait without a key, and any key the
// menu does not know, just lead to the next wait. A keypad whose device went away will
// never deliver the leaving key, so that ends the wait with -2 instead.
int CMenu::WaitForChoice(const CScreen& screen, float timeout) {
    for (;;) {
        switch (keypad.WaitKeyEvent(timeout)) {
            case VANTOR_KEY_UP:
                SelectNeighbour(false);
                PaintMenu(screen);
                break;
            case VANTOR_KEY_DOWN:
                SelectNeighbour(true);
                PaintMenu(screen);
                break;
            case VANTOR_KEY_OK:
            case VANTOR_KEY_SELECT:
                return SelectedId();
            case VANTOR_KEY_BACK:
                return VANTOR_MENU_BACK;
            case VANTOR_KEY_CANCEL:
                return VANTOR_MENU_CANCEL;
            case VANTOR_KEY_HOME:
                return VANTOR_MENU_HOME;
            default:
                if (keypad.IsDeviceLost()) return kResultKeypadLost;
                break;
        }
    }
}

void CMenu::SelectNeighbour(bool forward) {
    auto current = objects.begin();
    while (current != objects.end() && *current != pSelectedItem) ++current;
    if (current == objects.end()) {
        pSelectedItem = static_cast<CMenuItem*>(forward ? objects.front() : objects.back());
        return;
    }
    if (forward) {
        ++current;
        if (current == objects.end()) current = objects.begin();
    } else {
        if (current == objects.begin()) current = objects.end();
        --current;
    }
    pSelectedItem = static_cast<CMenuItem*>(*current);
}

int CMenu::SelectedId() const {
    return pSelectedItem == nullptr ? 0 : pSelectedItem->id;
}

}  // namespace Vantor
