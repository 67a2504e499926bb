// SPDX-License-Identifier: MIT
// CancelCopy: the one thing a signal handler may do to a copy. A sig_atomic_t is all a
// handler can safely write; the copy looks at it before every block.
#include "CopyCancel.h"

#include <csignal>

#include "vantor.h"

namespace Vantor {

namespace {

volatile sig_atomic_t requested = 0;

}  // namespace

bool CopyCancelRequested() {
    return requested != 0;
}

void ClearCopyCancel() {
    requested = 0;
}

}  // namespace Vantor

int CancelCopy(void) {
    Vantor::requested = 1;
    return 0;
}
