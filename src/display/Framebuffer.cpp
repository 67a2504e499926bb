#include "vantor/Framebuffer.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
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
// Far beyond any panel; keeps every pixel coordinate and row size well inside an int.
const unsigned kMaxSide = 65536;

}  // namespace

CFramebuffer::CFramebuffer(const char* device)
    : bytesPerPixel(0),
      pDevicePath(nullptr),
      fd(-1),
      pScreen(nullptr),
      pFontRegular(nullptr),
      pFontBold(nullptr),
      mappedBytes(0) {
    std::memset(&varInfo, 0, sizeof(varInfo));
    std::memset(&fixInfo, 0, sizeof(fixInfo));
    if (device == nullptr) return;
    if (!Open(device) || !ReadScreenInfo(device) || !DescribeScreen(device)) {
        CloseDevice();
        return;
    }
    int flags = fcntl(fd, F_GETFD);
    if (flags >= 0) fcntl(fd, F_SETFD, flags | FD_CLOEXEC);
    bytesPerPixel = (static_cast<int>(varInfo.bits_per_pixel) + 7) >> 3;
    pDevicePath = new char[std::strlen(device) + 1];
    std::strcpy(pDevicePath, device);
    if (!Map(device)) {
        screen = CScreen();
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

bool CFramebuffer::DescribeScreen(const char* device) {
    return HasDrawableFormat(device) && HasUsableGeometry(device);
}

bool CFramebuffer::HasDrawableFormat(const char* device) {
    if (CPixelFormat::FromDevice(varInfo, screen.format)) return true;
    printf(
        "%s: unsupported pixel layout on %s: %u bits per pixel, red %u/%u, green %u/%u, "
        "blue %u/%u (offset/length)\n",
        kClassName, device, varInfo.bits_per_pixel, varInfo.red.offset, varInfo.red.length,
        varInfo.green.offset, varInfo.green.length, varInfo.blue.offset, varInfo.blue.length);
    return false;
}

// The memory holds yres_virtual rows of line_length bytes (drivers that leave
// line_length at 0 mean unpadded rows); the visible page is xres x yres at the pan
// offsets, cut to the virtual area. Everything is checked in 64 bits before any of it
// becomes an address.
bool CFramebuffer::HasUsableGeometry(const char* device) {
    const uint64_t row = uint64_t(varInfo.xres_virtual) * screen.format.getBytesPerPixel();
    const uint64_t line = fixInfo.line_length != 0 ? fixInfo.line_length : row;
    const uint64_t bytes = line * varInfo.yres_virtual;
    const bool usable =
        varInfo.xres_virtual > 0 && varInfo.yres_virtual > 0 && varInfo.xres > 0 &&
        varInfo.yres > 0 && varInfo.xres_virtual <= kMaxSide && varInfo.yres_virtual <= kMaxSide &&
        varInfo.xoffset < varInfo.xres_virtual && varInfo.yoffset < varInfo.yres_virtual &&
        line >= row && bytes <= SIZE_MAX && (fixInfo.smem_len == 0 || fixInfo.smem_len >= bytes);
    if (!usable) {
        printf(
            "%s: unsupported screen geometry on %s: %ux%u at %u,%u in %ux%u, %u bytes per "
            "line, %u bytes of memory\n",
            kClassName, device, varInfo.xres, varInfo.yres, varInfo.xoffset, varInfo.yoffset,
            varInfo.xres_virtual, varInfo.yres_virtual, fixInfo.line_length, fixInfo.smem_len);
        return false;
    }
    mappedBytes = size_t(bytes);
    screen.width = int(std::min(varInfo.xres, varInfo.xres_virtual - varInfo.xoffset));
    screen.height = int(std::min(varInfo.yres, varInfo.yres_virtual - varInfo.yoffset));
    screen.stride = size_t(line);
    return true;
}

bool CFramebuffer::Map(const char* device) {
    void* memory = mmap(nullptr, mappedBytes, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (memory == MAP_FAILED) {
        printf("%s: cannot map frame buffer %s to memory\n", kClassName, device);
        return false;
    }
    pScreen = static_cast<uint32_t*>(memory);
    screen.pStart = static_cast<uint8_t*>(memory) + size_t(varInfo.yoffset) * screen.stride +
                    size_t(varInfo.xoffset) * screen.format.getBytesPerPixel();
    screen.AttachDevice(fd, &varInfo);
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
        munmap(pScreen, mappedBytes);
        pScreen = nullptr;
    }
    mappedBytes = 0;
    screen = CScreen();
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
