// SPDX-License-Identifier: MIT
// The C interface: the state record, the load and unload hooks, the crash report and
// every exported function. Each call decides its result code here.
#include "vantor.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <iostream>
#include <memory>

#include "Boundary.h"
#include "Console.h"
#include "ContextKeypad.h"
#include "CrashLine.h"
#include "KeySettings.h"
#include "MenuFit.h"
#include "vantor/AsciiText.h"
#include "vantor/BitmapFont.h"
#include "vantor/Canvas.h"
#include "vantor/Context.h"
#include "vantor/Dialog.h"
#include "vantor/Framebuffer.h"
#include "vantor/Menu.h"
#include "vantor/Progress.h"
#include "vantor/ProgressBar.h"
#include "vantor/TextCodes.h"

namespace Vantor {

context* pContext = nullptr;

namespace {

CContextKeypad& WidgetKeypad() {
    static CContextKeypad keypad;
    return keypad;
}

bool IsValid() {
    return IsContextValid(pContext);
}

CFramebuffer& Screen() {
    return *pContext->pFramebuffer;
}

long long MaxCanvasPixels() {
    return CanvasPixelLimit(Screen().getScreenWidth(), Screen().getScreenHeight());
}

bool IsAcceptableSize(int width, int height) {
    return width >= 1 && height >= 1 && static_cast<long long>(width) * height <= MaxCanvasPixels();
}

CBitmapFont* FontFromSelector(int font) {
    if (font == 0) return Screen().pFontRegular;
    if (font == 1) return Screen().pFontBold;
    return nullptr;
}

template <typename T>
void Release(T*& slot) {
    delete slot;
    slot = nullptr;
}

template <typename T>
void Replace(T*& slot, T* object) {
    T* old = slot;
    slot = object;
    delete old;
}

// Everything that draws with the framebuffer's fonts or on its screen goes with it.
void ReleaseScreenObjects() {
    Release(pContext->pCanvas);
    Release(pContext->pDialog);
    Release(pContext->pProgress);
    Release(pContext->pMenu);
    Release(pContext->pFramebuffer);
}

void InstallCrashHandler() {
    struct sigaction current;
    std::memset(&current, 0, sizeof(current));
    sigaction(SIGSEGV, nullptr, &current);
    if (current.sa_sigaction == handler) return;
    struct sigaction action;
    std::memset(&action, 0, sizeof(action));
    sigemptyset(&action.sa_mask);
    action.sa_sigaction = handler;
    action.sa_flags = SA_SIGINFO;
    sigaction(SIGSEGV, &action, nullptr);
    sigaction(SIGABRT, &action, nullptr);
}

// The handler's code goes away with the library: a signal after dlclose must not
// jump into unmapped memory, so the default actions come back where ours still stand.
void RemoveCrashHandler() {
    for (int signal : {SIGSEGV, SIGABRT}) {
        struct sigaction current;
        std::memset(&current, 0, sizeof(current));
        if (sigaction(signal, nullptr, &current) == 0 && current.sa_sigaction == handler) {
            ::signal(signal, SIG_DFL);
        }
    }
}

void Line(const char* text) {
    std::cerr << text << std::endl;
}

}  // namespace

bool IsContextValid(context* ctx) {
    return ctx != nullptr && ctx->pFramebuffer != nullptr && ctx->pFramebuffer->pScreen != nullptr;
}

__attribute__((constructor(101))) void VantorInit() {
    InstallCrashHandler();
    CTextCodes::setEncoding(eTextBytes);  // a fresh state reads text as bytes
    pContext = new (std::nothrow) context();
}

__attribute__((destructor(101))) void VantorCleanup() {
    if (pContext == nullptr) return;
    Release(pContext->pFramebuffer);
    Release(pContext->pCanvas);
    Release(pContext->pDialog);
    Release(pContext->pProgress);
    Release(pContext->pMenu);
    Release(pContext->pKeypad);
    delete pContext;
    pContext = nullptr;
    RemoveCrashHandler();
    CConsole::GiveBack();
}

// A faulting access is retried when the handler returns and would fault again
// forever; after reporting a fault raised by the hardware the default action is put
// back, so the retry ends the process as an unhandled crash would. A signal sent by
// a program (si_code 0 or below) cannot recur that way and leaves the handler in place.
void handler(int signal, siginfo_t* info, void*) {
    siginfo_t empty;
    if (info == nullptr) {
        std::memset(&empty, 0, sizeof(empty));
        info = &empty;
    }
    const int savedErrno = errno;
    CrashLine("Signal caught!").Write();
    CrashLine("\tSignal number: ").Number(info->si_signo).Write();
    CrashLine("\tError number:  ").Number(info->si_errno).Write();
    CrashLine("\tSignal code:   ").Number(info->si_code).Write();
    if (signal == SIGABRT) {
        CrashLine("Abort!").Write();
    } else if (signal == SIGSEGV) {
        CrashLine("Segmentation fault!").Write();
        // The error stream stays hexadecimal afterwards, for the host and for later
        // reports alike; changing a flag takes no lock and allocates nothing.
        std::cerr.setf(std::ios_base::hex, std::ios_base::basefield);
        CrashLine("Offending address: ").Pointer(info->si_addr).Write();
        if (info->si_code > 0) ::signal(SIGSEGV, SIG_DFL);
    } else {
        CrashLine("Signal: ").Number(signal).Write();
    }
    CConsole::GiveBack();  // a crashed host must not leave the user a dead console
    errno = savedErrno;
}

}  // namespace Vantor

using namespace Vantor;

namespace {

int AddText(int x, int y, const char* text, const CRGBA24& fg, const CRGBA24& bg, int font,
            int align) {
    if (!IsValid() || pContext->pCanvas == nullptr) return 0;
    CBitmapFont* selected = FontFromSelector(font);
    if (selected == nullptr) return -1;
    std::unique_ptr<CAsciiText> line(new CAsciiText(text, *selected, CPoint(x, y), fg, bg));
    line->setAlignment(static_cast<eAlignMode>(align));
    pContext->pCanvas->objects.push_back(line.get());
    line.release();
    return 0;
}

CRGBA24 CanvasBackground() {
    return (IsValid() && pContext->pCanvas != nullptr) ? pContext->pCanvas->background : CRGBA24(0);
}

}  // namespace

/* --- State and screen -------------------------------------------------------------- */

void* InitFramebuffer(const char* device) {
    return Guarded<void*>("InitFramebuffer", nullptr, [&]() -> void* {
        if (pContext == nullptr) {
            Line("InitFramebuffer: context allocation error");
            return nullptr;
        }
        ReleaseScreenObjects();
        pContext->pFramebuffer = new CFramebuffer(device);
        if (pContext->pFramebuffer->pScreen == nullptr) {
            Line("InitFramebuffer: allocation failed");
            return nullptr;
        }
        return pContext;
    });
}

int InitCanvas(int x, int y, int width, int height) {
    return Guarded("InitCanvas", -2, [&] {
        if (!IsValid() || !IsAcceptableSize(width, height)) return -2;
        Replace(pContext->pCanvas, Screen().CreateCanvas(x, y, width, height));
        return 0;
    });
}

int Update(void) {
    return Guarded("Update", -2, [] {
        if (!IsValid() || pContext->pCanvas == nullptr) return -2;
        Screen().Refresh(*pContext->pCanvas);
        return 0;
    });
}

int Restore(void) {
    return Guarded("Restore", -2, [] {
        if (!IsValid()) return -2;
        CFramebuffer& fb = Screen();
        CCanvas* covering[] = {pContext->pProgress, pContext->pDialog, pContext->pMenu,
                               pContext->pCanvas};
        for (CCanvas* canvas : covering) {
            if (canvas != nullptr) {
                canvas->RestoreBackground(fb.getScreen());
            }
        }
        return 0;
    });
}

int Clear(void) {
    return Guarded("Clear", -2, [] {
        if (!IsValid()) return 2;
        // The widgets forget the objects they pointed to as the objects are deleted.
        if (pContext->pProgress != nullptr) pContext->pProgress->Clear();
        if (pContext->pDialog != nullptr) pContext->pDialog->Clear();
        if (pContext->pMenu != nullptr) pContext->pMenu->Clear();
        if (pContext->pCanvas == nullptr) return -2;
        pContext->pCanvas->Clear();
        Update();
        return 0;
    });
}

/* --- Text and colour --------------------------------------------------------------- */

int WriteText(int x, int y, const char* text, uint32_t colour, int font) {
    return Guarded("WriteText", -2, [&] {
        return AddText(x, y, text, colour, CanvasBackground(), font, eAlignLeft);
    });
}

int WriteInvText(int x, int y, const char* text, uint32_t colour, int font) {
    return Guarded("WriteInvText", -2, [&] {
        return AddText(x, y, text, CanvasBackground(), colour, font, eAlignLeft);
    });
}

int WriteTextWithBackground(int x, int y, const char* text, uint32_t fg, uint32_t bg, int font) {
    return Guarded("WriteTextWithBackground", -2,
                   [&] { return AddText(x, y, text, fg, bg, font, eAlignLeft); });
}

int WriteAlignedTextWithBackground(int x, int y, const char* text, uint32_t fg, uint32_t bg,
                                   int font, int align) {
    return Guarded("WriteAlignedTextWithBackground", -2,
                   [&] { return AddText(x, y, text, fg, bg, font, align); });
}

int getScreenSize(int* width, int* height) {
    if (!IsValid()) return -2;
    if (width != nullptr) *width = Screen().getScreenWidth();
    if (height != nullptr) *height = Screen().getScreenHeight();
    return 0;
}

int getFontSize(int font, int* width, int* height) {
    if (!IsValid()) return -2;
    const CBitmapFont* selected = FontFromSelector(font);
    if (selected == nullptr) return -2;
    if (width != nullptr) *width = selected->header.glyphWidth;
    if (height != nullptr) *height = selected->header.glyphHeight;
    return 0;
}

/* --- Keys -------------------------------------------------------------------------- */

int InitKeypad(void) {
    return Guarded("InitKeypad", -19, [] {
        return pContext == nullptr ? -19 : CKeySettings::OpenKeypad(pContext->pKeypad);
    });
}

int WaitKey(float timeout) {
    return Guarded("WaitKey", -1, [&] {
        if (pContext == nullptr || pContext->pKeypad == nullptr) return -1;
        return pContext->pKeypad->WaitKeyEvent(timeout);
    });
}

/* --- Dialog ------------------------------------------------------------------------ */

int InitDialog(int x, int y, int w, int h) {
    return Guarded("InitDialog", -2, [&] {
        if (!IsValid() || !IsAcceptableSize(w, h)) return -2;
        Replace(pContext->pDialog, Screen().CreateDialog(WidgetKeypad(), x, y, w, h, eDialogYesNo));
        return 0;
    });
}

int ShowDialog(const char** lines, int type, int align) {
    return Guarded("ShowDialog", -2, [&] {
        if (!IsValid() || lines == nullptr || pContext->pDialog == nullptr) return -2;
        const bool waitsForKeys = type >= eDialogOk && type <= eDialogYesNo;
        if (waitsForKeys && !CContextKeypad::IsUsable()) return -2;
        CDialog& dialog = *pContext->pDialog;
        CBitmapFont& font = *Screen().pFontRegular;
        const int lineHeight = font.header.glyphHeight;
        for (int k = 0; lines[k] != nullptr; ++k) {
            std::unique_ptr<CAsciiText> line(new CAsciiText(
                lines[k], font, CPoint(CDialog::kTextInset, CDialog::kTextInset + k * lineHeight)));
            line->setAlignment(static_cast<eAlignMode>(align));
            dialog.objects.push_back(line.get());
            line.release();
        }
        dialog.dialogType = static_cast<eDialogType>(type);
        CFramebuffer& fb = Screen();
        // Each key wait sleeps up to 0.2 s like the menu's: a dialog that waits for an
        // answer must not keep a core busy. The keys and results are the same.
        return dialog.QueryDialog(fb.getScreen(), 0.2f);
    });
}

int HideDialog(void) {
    return Guarded("HideDialog", -2, [] {
        if (!IsValid() || pContext->pDialog == nullptr) return -2;
        CFramebuffer& fb = Screen();
        pContext->pDialog->RestoreBackground(fb.getScreen());
        return 0;
    });
}

/* --- Menu -------------------------------------------------------------------------- */

int InitMenu(int x, int y) {
    return Guarded("InitMenu", -2, [&] {
        if (!IsValid()) return -2;
        Replace(pContext->pMenu, Screen().CreateMenu(WidgetKeypad(), x, y, eMenuVertical));
        return 0;
    });
}

int ShowMenu(const char** entries, int orientation, int align) {
    return Guarded("ShowMenu", -2, [&] {
        if (!IsValid() || pContext->pMenu == nullptr || entries == nullptr) return -2;
        if (!CContextKeypad::IsUsable()) return -2;
        CMenu& menu = *pContext->pMenu;
        CFramebuffer& fb = Screen();
        if (!MenuFits(menu, entries, orientation, fb.getScreenWidth(), fb.getScreenHeight(),
                      MaxCanvasPixels())) {
            return -2;
        }
        menu.orientation = static_cast<eMenuOrientation>(orientation);
        menu.itemAlignment = static_cast<eAlignMode>(align);
        for (int n = 1; entries[n - 1] != nullptr; ++n) menu.AddItem(n, entries[n - 1], false);
        menu.FitToScreen(fb.getScreenWidth(), fb.getScreenHeight());
        return menu.QueryMenu(fb.getScreen(), 0.2f);
    });
}

/* --- Progress window --------------------------------------------------------------- */

int InitProgress(int x, int y, int w, int h) {
    return Guarded("InitProgress", -2, [&] {
        if (!IsValid() || !IsAcceptableSize(w, h)) return -2;
        CFramebuffer& fb = Screen();
        Replace(pContext->pProgress, fb.CreateProgress(*fb.pFontRegular, "Progress:", x, y, w, h));
        return 0;
    });
}

int ShowProgress(const char* text, int align, float percent) {
    return Guarded("ShowProgress", -2, [&] {
        if (!IsValid() || pContext->pProgress == nullptr) return -2;
        CProgress& progress = *pContext->pProgress;
        if (text != nullptr) progress.setText(text, static_cast<eAlignMode>(align));
        progress.setProgress(percent);
        CFramebuffer& fb = Screen();
        progress.ShowProgress(fb.getScreen());
        return 0;
    });
}

int UpdateProgress(const char* text, int align, float percent) {
    return Guarded("UpdateProgress", -2, [&] {
        if (!IsValid() || pContext->pProgress == nullptr) return -2;
        CProgress& progress = *pContext->pProgress;
        CFramebuffer& fb = Screen();
        progress.setProgress(percent);
        if (text == nullptr) {
            progress.PaintProgress(fb.getScreen());
            return 0;
        }
        progress.setText(text, static_cast<eAlignMode>(align));
        progress.Paint(fb.getScreen());
        return 0;
    });
}

int HideProgress(void) {
    return Guarded("HideProgress", -2, [] {
        if (!IsValid() || pContext->pProgress == nullptr) return -2;
        CFramebuffer& fb = Screen();
        pContext->pProgress->RestoreBackground(fb.getScreen());
        return 0;
    });
}
