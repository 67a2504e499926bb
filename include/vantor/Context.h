// SPDX-License-Identifier: MIT
#ifndef VANTOR_CONTEXT_H
#define VANTOR_CONTEXT_H

#include <signal.h>

#include "vantor/Export.h"

namespace Vantor {

class CCanvas;
class CDialog;
class CFramebuffer;
class CKeypad;
class CMenu;
class CProgress;

// The one state record of the process. Each slot is filled by its initialising call
// and owns what it points to.
struct VANTOR_API context {
    CFramebuffer* pFramebuffer;
    CCanvas* pCanvas;
    CDialog* pDialog;
    CMenu* pMenu;
    CProgress* pProgress;
    CKeypad* pKeypad;
};

// Made when the library is loaded, destroyed when it is unloaded.
extern VANTOR_API context* pContext;

// Run by the loader: the first before anything else of the library, the second at unload.
VANTOR_API void VantorInit();
VANTOR_API void VantorCleanup();

// True only while a framebuffer with mapped screen memory is in the record.
VANTOR_API bool IsContextValid(context* ctx);

// The crash report for SIGSEGV and SIGABRT, written on the standard error stream.
VANTOR_API void handler(int signal, siginfo_t* info, void* unused);

}  // namespace Vantor

#endif
