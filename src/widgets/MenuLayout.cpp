// SPDX-License-Identifier: MIT
#include "MenuLayout.h"

#include <algorithm>

#include "vantor/GObj.h"

namespace Vantor {

void CMenuLayout::Place(const std::list<CGObj*>& entries) const {
    CPoint at(kStart, kStart);
    for (CGObj* entry : entries) {
        int width = 0, height = 0;
        entry->setPosition(at);
        entry->getSize(width, height);
        if (column) {
            at.y += static_cast<int>(height + Gap());
        } else {
            at.x += static_cast<int>(width + Gap());
        }
    }
}

long long CMenuLayout::Length(const std::list<CGObj*>& entries) const {
    long long length = 0;
    for (CGObj* entry : entries) {
        int width = 0, height = 0;
        entry->getSize(width, height);
        length += Along(width, height) + Gap();
    }
    return entries.empty() ? 0 : length - Gap();
}

long long CMenuLayout::Widest(const std::list<CGObj*>& entries) {
    long long widest = 0;
    for (CGObj* entry : entries) {
        int width = 0, height = 0;
        entry->getSize(width, height);
        widest = std::max<long long>(widest, width);
    }
    return widest;
}

}  // namespace Vantor
