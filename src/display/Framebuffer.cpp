#include "vantor/Framebuffer.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>

#include "vantor/BitmapFont.h"
#include "vantor/Canvas.h"
#include "vantor/Dialog.h"
#include "vantor/Menu.h"
#include "vantor/Progress.h"

namespace Vantor {

namespace {

const char* const kClassName = "CFramebuffer";
const char* const kRegularFontPath = "/usr/share/fonts/vantor/lr.tf";
const char* const kBoldFontPath = "/usr/share/fonts/vantor/lb.tf";

}  // namespace

CFramebuffer::CFramebuffer(const char* device)
    : bytesPerPixel(0),
      pDevicePath(nullptr),
      fd(-1),
      pScreen(nullptr),
      pFontRegular(nullptr),
      pFontBold(nullptr) {
    std::memset(&varInfo, 0, sizeof(varInfo));
    std::memset(&fixInfo, 0, sizeof(fixInfo));
    if (device == nullptr) return;
    if (!Open(device) || !ReadScreenInfo(device) || !HasSupportedLayout(device)) {
        CloseDevice();
        return;
    }
    int flags = fcntl(fd, F_GETFD);
    if (flags >= 0) fcntl(fd, F_SETFD, flags | FD_CLOEXEC);
    bytesPerPixel = (static_cast<int>(varInfo.bits_per_pixel) + 7) >> 3;
    pDevicePath = new char[std::strlen(device) + 1];
    std::strcpy(pDevicePath, device);
    if (!Map(device)) {
        delete[] pDevicePath;
        pDevicePath = nullptr;
        CloseDevice();
        return;
    }
    LoadFonts();
}

CFramebuffer::~CFramebuffer() {
    Release();
}

bool CFramebuffer::Open(const char* device) {
    fd = open(device, O_RDWR);
    if (fd < 0) {
        printf("%s: can't access frame buffer device at %s\n", kClassName, device);
        fd = -1;
        return false;
    }
    return true;
}

bool CFramebuffer::ReadScreenInfo(const char* device) {
    int result = ioctl(fd, FBIOGET_VSCREENINFO, &varInfo);
    if (result < 0) {
        printf("%s: cannot access variable screen info from %s: %d\n", kClassName, device, result);
        return false;
    }
    result = ioctl(fd, FBIOGET_FSCREENINFO, &fixInfo);
    if (result < 0) {
        printf("%s: cannot access fixed screen info from %s: %d\n", kClassName, device, result);
        return false;
    }
    return true;
}

// Every drawing path writes 32-bit pixels in rows of xres_virtual pixels; a device
// laid out any other way would be scribbled over, so it is refused.
bool CFramebuffer::HasSupportedLayout(const char* device) const {
    const unsigned expectedLine = 4u * varInfo.xres_virtual;
    if (varInfo.bits_per_pixel == 32 && fixInfo.line_length == expectedLine &&
        varInfo.xres_virtual > 0 && varInfo.yres_virtual > 0) {
        return true;
    }
    printf(
        "%s: unsupported screen layout on %s: %u bits per pixel, %u bytes per line, "
        "%ux%u (needs 32 bits per pixel and %u bytes per line)\n",
        kClassName, device, varInfo.bits_per_pixel, fixInfo.line_length, varInfo.xres_virtual,
        varInfo.yres_virtual, expectedLine);
    return false;
}

size_t CFramebuffer::MappingSize() const {
    return static_cast<size_t>(varInfo.xres_virtual) * varInfo.yres_virtual * bytesPerPixel;
}

bool CFramebuffer::Map(const char* device) {
    void* memory = mmap(nullptr, MappingSize(), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (memory == MAP_FAILED) {
        printf("%s: cannot map frame buffer %s to memory\n", kClassName, device);
        return false;
    }
    pScreen = static_cast<uint32_t*>(memory);
    return true;
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

void CFramebuffer::CloseDevice() {
    if (fd > 0) close(fd);
    fd = -1;
}

void CFramebuffer::Release() {
    if (pScreen != nullptr) {
        munmap(pScreen, MappingSize());
        pScreen = nullptr;
    }
    delete[] pDevicePath;
    pDevicePath = nullptr;
    CloseDevice();
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
    canvas->SaveBackground(pScreen, getScreenWidth(), getScreenHeight());
    return canvas;
}

int CFramebuffer::Refresh(CCanvas& canvas) {
    canvas.Refresh();
    canvas.SaveBackground(pScreen, getScreenWidth(), getScreenHeight());
    return canvas.Paint(pScreen, getScreenWidth(), getScreenHeight());
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
    progress->SaveBackground(pScreen, getScreenWidth(), getScreenHeight());
    return progress;
}

}  // namespace Vantor
