// SPDX-License-Identifier: MIT
// The C call that makes a menu which scrolls within a box instead of the whole screen.
#include <algorithm>
#include <climits>

#include "Boundary.h"
#include "vantor.h"
#include "vantor/Context.h"
#include "vantor/Menu.h"

int InitMenuBox(int x, int y, int width, int height) {
    return Vantor::Guarded("InitMenuBox", -2, [&] {
        if (width < 1 || height < 1) return -2;
        const int made = InitMenu(x, y);
        if (made != 0) return made;
        const auto edge = [](long long far) { return int(std::min<long long>(far, INT_MAX)); };
        Vantor::pContext->pMenu->scrollLimit = Vantor::CPoint(
            edge(static_cast<long long>(x) + width), edge(static_cast<long long>(y) + height));
        return 0;
    });
}
