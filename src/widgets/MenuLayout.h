// SPDX-License-Identifier: MIT
#ifndef VANTOR_MENULAYOUT_H
#define VANTOR_MENULAYOUT_H

#include <list>

#include "vantor/Enums.h"

namespace Vantor {

class CGObj;

// Where a menu's entries stand and how big a canvas they make. Every place that draws,
// sizes or predicts a menu (the menu itself, its scrolling window, the dialog's button
// row, the C calls' size checks) asks this class, so they cannot disagree.
class CMenuLayout {
  public:
    static const int kStart = 5;      // the first entry's offset from the canvas corner
    static const int kBorder = 3;     // the margin Autoresize keeps around the entries
    static const int kColumnGap = 8;  // between entries of a column
    static const int kRowGap = 15;    // between entries of a row
    static const int kMarkStrip = 8;  // a scrolling window's room for a mark at either end

    explicit CMenuLayout(eMenuOrientation orientation) : column(orientation == eMenuVertical) {}

    bool IsColumn() const { return column; }
    long long Gap() const { return column ? kColumnGap : kRowGap; }
    // An entry's size along the menu's axis.
    long long Along(long long width, long long height) const { return column ? height : width; }

    // The canvas size around entries that reach this far past kStart: Autoresize's margin
    // on both sides, and the frame counts both its corner pixels.
    static long long Canvas(long long extent) { return extent + 2 * kBorder + 1; }

    // Places the entries from kStart, each after the one before and a gap.
    void Place(const std::list<CGObj*>& entries) const;
    // Where the entries, placed so, end along the axis, measured from kStart.
    long long Length(const std::list<CGObj*>& entries) const;
    static long long Widest(const std::list<CGObj*>& entries);

  private:
    bool column;
};

}  // namespace Vantor

#endif
