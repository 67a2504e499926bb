// SPDX-License-Identifier: MIT
// setRotation: how the panel is mounted. It is chosen once, right after the
// framebuffer is opened, because every canvas and widget has saved screen pixels and
// placed itself in the geometry that stood when it was made.
#include "vantor.h"
#include "vantor/Context.h"
#include "vantor/Framebuffer.h"

using namespace Vantor;

namespace {

bool IsAngle(int degrees) {
    return degrees == 0 || degrees == 90 || degrees == 180 || degrees == 270;
}

bool HasScreenObjects() {
    return pContext->pCanvas != nullptr || pContext->pDialog != nullptr ||
           pContext->pMenu != nullptr || pContext->pProgress != nullptr;
}

}  // namespace

int setRotation(int degrees) {
    if (!IsAngle(degrees)) return -1;
    if (!IsContextValid(pContext)) return -2;
    if (HasScreenObjects()) return -3;
    pContext->pFramebuffer->setRotation(degrees);
    return 0;
}
