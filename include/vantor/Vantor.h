// SPDX-License-Identifier: MIT
#ifndef VANTOR_VANTOR_H
#define VANTOR_VANTOR_H

/* Every class of the library, for C++ hosts that use them directly. */
#include "vantor/AsciiText.h"
#include "vantor/BitmapFont.h"
#include "vantor/Canvas.h"
#include "vantor/Context.h"
#include "vantor/Dialog.h"
#include "vantor/Enums.h"
#include "vantor/Frame.h"
#include "vantor/Framebuffer.h"
#include "vantor/GObj.h"
#include "vantor/Glyph.h"
#include "vantor/Keypad.h"
#include "vantor/Menu.h"
#include "vantor/MenuItem.h"
#include "vantor/Point.h"
#include "vantor/Progress.h"
#include "vantor/ProgressBar.h"
#include "vantor/RGBA24.h"
#include "vantor/Rectangle.h"
#include "vantor/TCA8418Keypad.h"

#endif
