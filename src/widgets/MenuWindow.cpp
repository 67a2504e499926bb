// SPDX-License-Identifier: MIT
// The scrolling window of a menu longer than the screen: which entries it shows, where,
// and the marks that say more entries lie beyond its ends.
#include <algorithm>
#include <iterator>

#include "vantor/BitmapFont.h"
#include "vantor/Menu.h"
#include "vantor/MenuItem.h"

namespace Vantor {

namespace {

const int kStart = 5;
const int kBorder = 3;
const int kColumnGap = 8;
const int kRowGap = 15;
const int kMarkStrip = 8;  // room for a mark at either end of the window
const int kMarkDepth = 5;  // a mark is a triangle 5 pixels deep and 9 wide
const int kMarkInset = 3;  // from the window's edge to the mark's tip
const uint32_t kMarkColour = 0xFFFFFF;

}  // namespace

// A menu that fits is laid out exactly as Draw and Autoresize(3) always did it.
int CMenu::FitToScreen(int screenWidth, int screenHeight) {
    if (objects.empty()) return -1;
    scrolling = false;
    screenWidth = std::min(screenWidth, scrollLimit.x);
    screenHeight = std::min(screenHeight, scrollLimit.y);
    const bool column = orientation == eMenuVertical;
    const long long room = column ? static_cast<long long>(screenHeight) - frame.topLeft.y
                                  : static_cast<long long>(screenWidth) - frame.topLeft.x;
    if ((!column && orientation != eMenuHorizontal) || EntriesEnd() <= room) {
        Draw();
        Autoresize(kBorder);
        return 0;
    }
    // A menu that starts above or left of the screen cannot use more than the screen.
    OpenWindow(std::clamp<long long>(room, 0, column ? screenHeight : screenWidth));
    return 1;
}

// A column window is as tall as the entries that fit in the room, a row window reaches
// the screen's right edge; either takes at least one entry.
void CMenu::OpenWindow(long long room) {
    scrolling = true;
    firstShown = 0;
    const int cell = font.header.glyphHeight;
    const long long widest = WidestEntry();
    windowEnd = room - kMarkStrip - kBorder;
    if (orientation == eMenuVertical) {
        const long long shown = static_cast<long long>(ShownFrom(0));
        windowEnd = kStart + kMarkStrip + (shown - 1) * (cell + kColumnGap) + cell;
        setSize(static_cast<int>(widest + kStart + kBorder - 1),
                static_cast<int>(windowEnd + kMarkStrip + kBorder));
    } else {
        windowEnd = std::max(windowEnd, kStart + kMarkStrip + widest);
        setSize(static_cast<int>(windowEnd + kMarkStrip + kBorder), cell + kStart + kBorder - 1);
    }
}

// The window is painted from scratch: entries of different widths pass through it.
void CMenu::DrawWindow() {
    setArea(0, 0, getWidth(), getHeight(), background);
    ShowSelected();
    const size_t shown = ShownFrom(firstShown);
    long long at = kStart + kMarkStrip;
    auto entry = std::next(objects.begin(), static_cast<long>(firstShown));
    for (size_t i = 0; i < shown; ++i, ++entry) {
        (*entry)->setPosition(orientation == eMenuVertical ? CPoint(kStart, int(at))
                                                           : CPoint(int(at), kStart));
        at += Extent(*entry) + Gap();
        (*entry)->Draw(*this);
    }
    DrawMarks(firstShown > 0, firstShown + shown < objects.size());
}

// Triangles pointing up and down at the column's ends, left and right at the row's,
// centred across the window.
void CMenu::DrawMarks(bool before, bool after) {
    const CRGBA24 colour(kMarkColour);
    const bool column = orientation == eMenuVertical;
    const long long middle = (column ? getWidth() : getHeight()) / 2;
    const long long far = (column ? getHeight() : getWidth()) - 1;
    for (int d = 0; d < kMarkDepth; ++d) {
        const long long from = middle - d, to = middle + d + 1;
        const long long near = kMarkInset + d, back = far - kMarkInset - d;
        if (before && column) setArea(from, near, to, near + 1, colour);
        if (after && column) setArea(from, back, to, back + 1, colour);
        if (before && !column) setArea(near, from, near + 1, to, colour);
        if (after && !column) setArea(back, from, back + 1, to, colour);
    }
}

// Moves the window by as little as keeps the selected entry in it: stepping past the
// last shown entry brings the next one in, wrapping to the first shows the top again.
void CMenu::ShowSelected() {
    const size_t selected = SelectedIndex();
    if (selected < firstShown) firstShown = selected;
    while (selected >= firstShown + ShownFrom(firstShown)) ++firstShown;
}

size_t CMenu::ShownFrom(size_t first) const {
    long long at = kStart + kMarkStrip;
    size_t count = 0;
    for (auto entry = std::next(objects.begin(), static_cast<long>(first)); entry != objects.end();
         ++entry, ++count) {
        const long long extent = Extent(*entry);
        if (count > 0 && at + extent > windowEnd) break;
        at += extent + Gap();
    }
    return count;
}

size_t CMenu::SelectedIndex() const {
    size_t index = 0;
    for (CGObj* entry : objects) {
        if (entry == pSelectedItem) return index;
        ++index;
    }
    return 0;
}

long long CMenu::Extent(CGObj* entry) const {
    int width = 0, height = 0;
    entry->getSize(width, height);
    return orientation == eMenuVertical ? height : width;
}

long long CMenu::Gap() const {
    return orientation == eMenuVertical ? kColumnGap : kRowGap;
}

// Where the last entry ends along the menu's axis in the layout of a menu that fits.
long long CMenu::EntriesEnd() const {
    long long at = kStart;
    for (CGObj* entry : objects) at += Extent(entry) + Gap();
    return at - Gap();
}

int CMenu::WidestEntry() const {
    int widest = 0;
    for (CGObj* entry : objects) {
        int width = 0, height = 0;
        entry->getSize(width, height);
        widest = std::max(widest, width);
    }
    return widest;
}

}  // namespace Vantor
