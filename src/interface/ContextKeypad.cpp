// SPDX-License-Identifier: MIT
#include "ContextKeypad.h"

#include "vantor/Context.h"

namespace Vantor {

int CContextKeypad::WaitKeyEvent(float timeout) {
    if (pContext == nullptr || pContext->pKeypad == nullptr) return -1;
    return pContext->pKeypad->WaitKeyEvent(timeout);
}

bool CContextKeypad::IsDeviceLost() const {
    return pContext != nullptr && pContext->pKeypad != nullptr && pContext->pKeypad->IsDeviceLost();
}

bool CContextKeypad::IsUsable() {
    return pContext != nullptr && pContext->pKeypad != nullptr && pContext->pKeypad->fd > 0;
}

}  // namespace Vantor
