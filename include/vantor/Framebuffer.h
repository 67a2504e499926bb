// SPDX-License-Identifier: MIT
#ifndef VANTOR_FRAMEBUFFER_H
#define VANTOR_FRAMEBUFFER_H

#include <linux/fb.h>
#include <stddef.h>
#include <stdint.h>

#include "vantor/Enums.h"
#include "vantor/Export.h"
#include "vantor/Screen.h"

namespace Vantor {

class CBitmapFont;
class CCanvas;
class CDisplayDevice;
class CDialog;
class CKeypad;
class CMenu;
class CProgress;

// The display: opens a Linux display device (an fbdev node such as /dev/fb0 or a DRM
// card such as /dev/dri/card0), maps its memory and loads the two fonts. It is also the
// factory of the canvases and widgets that paint on it.
class VANTOR_API CFramebuffer {
  public:
    // Always yields an object; it is usable exactly when pScreen is not null. A font
    // that cannot be loaded is reported by a std::runtime_error naming the file, after
    // everything acquired so far has been released.
    explicit CFramebuffer(const char* device);
    virtual ~CFramebuffer();
    CFramebuffer(const CFramebuffer&) = delete;
    CFramebuffer& operator=(const CFramebuffer&) = delete;

    // The visible page: what every canvas and widget is drawn onto. A paint through it
    // also tells the driver to show the new pixels.
    const CScreen& getScreen() const { return screen; }
    int getScreenWidth() const { return screen.width; }
    int getScreenHeight() const { return screen.height; }
    // Turns the picture on the panel (see CScreen::setRotation); the size above is then
    // the turned one.
    bool setRotation(int degrees) { return screen.setRotation(degrees); }

    CCanvas* CreateCanvas(int x, int y, int width, int height);
    int Refresh(CCanvas& canvas);
    CMenu* CreateMenu(CKeypad& keypad, int x, int y, eMenuOrientation orientation);
    CDialog* CreateDialog(CKeypad& keypad, int x, int y, int width, int height, eDialogType type);
    CProgress* CreateProgress(CBitmapFont& font, const char* text, int x, int y, int width,
                              int height);

    // What the device is, for hosts that look: for a DRM card, varInfo and fixInfo
    // describe the mode and its buffer as an fbdev driver would.
    int bytesPerPixel;
    char* pDevicePath;
    int fd;
    fb_var_screeninfo varInfo;
    fb_fix_screeninfo fixInfo;
    uint32_t* pScreen;
    CBitmapFont* pFontRegular;
    CBitmapFont* pFontBold;

  private:
    void Adopt(const char* device);
    void LoadFonts();
    void Release();

    CDisplayDevice* pDevice;
    CScreen screen;
};

}  // namespace Vantor

#endif
