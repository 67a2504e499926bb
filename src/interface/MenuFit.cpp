// SPDX-License-Identifier: MIT
#include "MenuFit.h"

#include <algorithm>

#include "../widgets/MenuLayout.h"
#include "vantor/BitmapFont.h"
#include "vantor/Menu.h"
#include "vantor/TextCodes.h"

namespace Vantor {

namespace {

// A canvas, dialog, progress window or menu bigger than a few screens can never be
// shown; such a size comes from a bad argument and fails at once instead of pushing a
// small device into memory exhaustion (each canvas holds two buffers of 4 bytes per
// pixel). Tiny screens still get room for a usual widget.
const long long kScreensWorth = 4;
const long long kMinCanvasPixels = 1LL << 16;

// More than a scrolling window adds to the screen along its axis: its marks, margins
// and the one entry that may stand partly beyond the screen's edge.
const long long kWindowSlack = 40;

}  // namespace

long long CanvasPixelLimit(int screenWidth, int screenHeight) {
    const long long screen = static_cast<long long>(screenWidth) * screenHeight;
    return std::max(kScreensWorth * screen, kMinCanvasPixels);
}

// Counted before anything is added, from the font's cells (what AddItem will measure),
// and no more along the menu's axis than a scrolling window could take.
bool MenuFits(CMenu& menu, const char** entries, int orientation, int screenWidth, int screenHeight,
              long long maxPixels) {
    // An unknown orientation places nothing; a column's size bounds what it paints.
    const CMenuLayout layout(orientation == eMenuHorizontal ? eMenuHorizontal : eMenuVertical);
    const long long cell = menu.font.header.glyphHeight;
    const long long glyphWidth = menu.font.header.glyphWidth;
    long long widest = 0, along = -layout.Gap();
    const auto add = [&](long long width, long long height) {
        widest = std::max(widest, width);
        along += layout.Along(width, height) + layout.Gap();
    };
    for (CGObj* item : menu.objects) {
        int w = 0, h = 0;
        item->getSize(w, h);
        add(w, cell);
    }
    const eTextEncoding encoding = CTextCodes::getEncoding();
    for (int n = 0; entries[n] != nullptr; ++n) {
        add(static_cast<long long>(CTextCodes::Count(entries[n], encoding)) * glyphWidth, cell);
        if (widest > maxPixels) return false;
    }
    along = std::max(along, 0LL);
    const bool column = layout.IsColumn();
    const long long window = (column ? screenHeight + cell : screenWidth + widest) + kWindowSlack;
    const long long width = column ? widest : std::min(along, window);
    const long long height = column ? std::min(along, window) : cell;
    return CMenuLayout::Canvas(width) * CMenuLayout::Canvas(height) <= maxPixels;
}

}  // namespace Vantor
