// SPDX-License-Identifier: MIT
#include "vantor/Framebuffer.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>

#include "DisplayDevice.h"
#include "vantor/BitmapFont.h"
#include "vantor/Canvas.h"
#include "vantor/Dialog.h"
#include "vantor/Menu.h"
#include "vantor/Progress.h"

namespace Vantor {

namespace {

const char* const kRegularFontPath = "/usr/share/fonts/vantor/lr.tf";
const char* const kBoldFontPath = "/usr/share/fonts/vantor/lb.tf";

}  // namespace

CFramebuffer::CFramebuffer(const char* device)
    : bytesPerPixel(0),
      pDevicePath(nullptr),
      fd(-1),
      pScreen(nullptr),
      pFontRegular(nullptr),
      pFontBold(nullptr),
      pDevice(nullptr) {
    std::memset(&varInfo, 0, sizeof(varInfo));
    std::memset(&fixInfo, 0, sizeof(fixInfo));
    if (device == nullptr) return;
    pDevice = CDisplayDevice::Open(device);
    if (pDevice == nullptr) return;
    try {
        Adopt(device);
    } catch (...) {
        Release();
        throw;
    }
    LoadFonts();
}

CFramebuffer::~CFramebuffer() {
    Release();
}

// The public fields mirror the device for hosts that read them.
void CFramebuffer::Adopt(const char* device) {
    fd = pDevice->Descriptor();
    pDevice->Describe(varInfo, fixInfo);
    bytesPerPixel = (static_cast<int>(varInfo.bits_per_pixel) + 7) >> 3;
    pDevicePath = new char[std::strlen(device) + 1];
    std::strcpy(pDevicePath, device);
    pScreen = static_cast<uint32_t*>(pDevice->Memory());
    screen = pDevice->Page();
}

// A framebuffer without its fonts cannot show text; rather than leave a half-usable
// object, everything is released and the error names the file that failed.
void CFramebuffer::LoadFonts() {
    const char* path = kRegularFontPath;
    try {
        pFontRegular = new CBitmapFont(path);
        path = kBoldFontPath;
        pFontBold = new CBitmapFont(path);
    } catch (const std::exception& error) {
        Release();
        throw std::runtime_error(std::string("cannot load font ") + path + ": " + error.what());
    }
}

void CFramebuffer::Release() {
    screen = CScreen();
    delete pDevice;
    pDevice = nullptr;
    pScreen = nullptr;
    fd = -1;
    delete[] pDevicePath;
    pDevicePath = nullptr;
    bytesPerPixel = 0;
    std::memset(&fixInfo, 0, sizeof(fixInfo));
    std::memset(&varInfo, 0, sizeof(varInfo));
    delete pFontRegular;
    pFontRegular = nullptr;
    delete pFontBold;
    pFontBold = nullptr;
}

CCanvas* CFramebuffer::CreateCanvas(int x, int y, int width, int height) {
    CCanvas* canvas = new CCanvas(x, y, width, height);
    canvas->SaveBackground(screen);
    return canvas;
}

int CFramebuffer::Refresh(CCanvas& canvas) {
    canvas.Refresh();
    canvas.SaveBackground(screen);
    return canvas.Paint(screen);
}

// The menu starts as an empty canvas; it gets its buffers when it is first fitted
// to its entries, and keeps the top-left corner given here.
CMenu* CFramebuffer::CreateMenu(CKeypad& keypad, int x, int y, eMenuOrientation orientation) {
    CMenu* menu = new CMenu(*pFontRegular, keypad);
    menu->orientation = orientation;
    menu->setOffset(x, y);
    return menu;
}

CDialog* CFramebuffer::CreateDialog(CKeypad& keypad, int x, int y, int width, int height,
                                    eDialogType type) {
    return new CDialog(*pFontRegular, keypad, x, y, width, height, type);
}

CProgress* CFramebuffer::CreateProgress(CBitmapFont& font, const char* text, int x, int y,
                                        int width, int height) {
    CProgress* progress = new CProgress(font, text, x, y, width, height);
    progress->SaveBackground(screen);
    return progress;
}

}  // namespace Vantor
