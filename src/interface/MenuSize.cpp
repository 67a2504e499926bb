// SPDX-License-Identifier: MIT
// The C call that tells a host how big a menu will be before it shows one. It lays out
// a copy of the menu ShowMenu would show, so the answer cannot drift from the painting.
#include "Boundary.h"
#include "ContextKeypad.h"
#include "MenuFit.h"
#include "vantor.h"
#include "vantor/Context.h"
#include "vantor/Framebuffer.h"
#include "vantor/Menu.h"
#include "vantor/MenuItem.h"

namespace {

using namespace Vantor;

// The same place, box and entries; an entry already added keeps the characters it was
// read as, whatever the text encoding is now.
void CopyMenu(CMenu& from, CMenu& to) {
    to.setOffset(from.frame.topLeft.x, from.frame.topLeft.y);
    to.scrollLimit = from.scrollLimit;
    for (CGObj* object : from.objects) {
        const CMenuItem* entry = static_cast<const CMenuItem*>(object);
        to.AddItem(entry->id, entry->getText(), false);
        CMenuItem* copy = static_cast<CMenuItem*>(to.objects.back());
        copy->codes = entry->codes;
        copy->encoding = entry->encoding;
    }
}

int MeasureMenu(const char** entries, int orientation, int& width, int& height) {
    if (!IsContextValid(pContext)) return -2;
    CFramebuffer& fb = *pContext->pFramebuffer;
    CMenu* shown = pContext->pMenu;
    CContextKeypad keypad;
    CMenu probe(shown != nullptr ? shown->font : *fb.pFontRegular, keypad);
    if (shown != nullptr) CopyMenu(*shown, probe);
    const int screenWidth = fb.getScreenWidth(), screenHeight = fb.getScreenHeight();
    if (!MenuFits(probe, entries, orientation, screenWidth, screenHeight,
                  CanvasPixelLimit(screenWidth, screenHeight))) {
        return -2;
    }
    probe.orientation = static_cast<eMenuOrientation>(orientation);
    for (int n = 1; entries[n - 1] != nullptr; ++n) probe.AddItem(n, entries[n - 1], false);
    if (probe.FitToScreen(screenWidth, screenHeight) < 0) return -1;
    width = probe.getWidth();
    height = probe.getHeight();
    return 0;
}

}  // namespace

int getMenuSize(const char** entries, int orientation, int* width, int* height) {
    return Guarded("getMenuSize", -2, [&] {
        if (width != nullptr) *width = 0;
        if (height != nullptr) *height = 0;
        if (entries == nullptr || width == nullptr || height == nullptr) return -1;
        return MeasureMenu(entries, orientation, *width, *height);
    });
}
