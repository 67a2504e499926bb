// SPDX-License-Identifier: MIT
#ifndef VANTOR_MENUFIT_H
#define VANTOR_MENUFIT_H

namespace Vantor {

class CMenu;

// Whether the menu, with these entries added, makes a canvas of at most maxPixels on a
// screen of this size. A menu longer than the screen scrolls, so only the part that can
// be shown counts; what can fail is an entry far too wide (or, in a row, too tall).
bool MenuFits(CMenu& menu, const char** entries, int orientation, int screenWidth, int screenHeight,
              long long maxPixels);

}  // namespace Vantor

#endif
