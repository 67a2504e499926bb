// SPDX-License-Identifier: MIT
#include "MenuFit.h"

#include <algorithm>

#include "vantor/BitmapFont.h"
#include "vantor/Menu.h"
#include "vantor/TextCodes.h"

namespace Vantor {

// Counted before anything is added: the entries from (5, 5), 8 pixels apart in a column
// or 15 in a row, a margin of 3 around, and no more along the menu's axis than a
// scrolling window could take (the screen, plus one entry and the window's marks).
bool MenuFits(CMenu& menu, const char** entries, int orientation, int screenWidth, int screenHeight,
              long long maxPixels) {
    const bool column = orientation != eMenuHorizontal;
    const long long cell = menu.font.header.glyphHeight;
    const long long glyphWidth = menu.font.header.glyphWidth;
    long long widest = 0, along = 0;
    const auto add = [&](long long width) {
        widest = std::max(widest, width);
        along += column ? cell + 8 : width + 15;
    };
    for (CGObj* item : menu.objects) {
        int w = 0, h = 0;
        item->getSize(w, h);
        add(w);
    }
    const eTextEncoding encoding = CTextCodes::getEncoding();
    for (int n = 0; entries[n] != nullptr; ++n) {
        add(static_cast<long long>(CTextCodes::Count(entries[n], encoding)) * glyphWidth);
        if (widest > maxPixels) return false;
    }
    const long long window = (column ? screenHeight + cell : screenWidth + widest) + 40;
    const long long width = column ? widest : std::min(along, window);
    const long long height = column ? std::min(along, window) : cell;
    return (width + 11) * (height + 11) <= maxPixels;
}

}  // namespace Vantor
