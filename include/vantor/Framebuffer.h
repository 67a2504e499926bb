#ifndef VANTOR_FRAMEBUFFER_H
#define VANTOR_FRAMEBUFFER_H

#include <linux/fb.h>
#include <stddef.h>
#include <stdint.h>

#include "vantor/Enums.h"
#include "vantor/Export.h"

namespace Vantor {

class CBitmapFont;
class CCanvas;
class CDialog;
class CKeypad;
class CMenu;
class CProgress;

// The display: opens a Linux framebuffer device, maps its memory and loads the two
// fonts. It is also the factory of the canvases and widgets that paint on it.
class VANTOR_API CFramebuffer {
  public:
    // Always yields an object; it is usable exactly when pScreen is not null. A font
    // that cannot be loaded is reported by a std::runtime_error naming the file, after
    // everything acquired so far has been released.
    explicit CFramebuffer(const char* device);
    virtual ~CFramebuffer();
    CFramebuffer(const CFramebuffer&) = delete;
    CFramebuffer& operator=(const CFramebuffer&) = delete;

    int getScreenWidth() const { return static_cast<int>(varInfo.xres_virtual); }
    int getScreenHeight() const { return static_cast<int>(varInfo.yres_virtual); }

    CCanvas* CreateCanvas(int x, int y, int width, int height);
    int Refresh(CCanvas& canvas);
    CMenu* CreateMenu(CKeypad& keypad, int x, int y, eMenuOrientation orientation);
    CDialog* CreateDialog(CKeypad& keypad, int x, int y, int width, int height, eDialogType type);
    CProgress* CreateProgress(CBitmapFont& font, const char* text, int x, int y, int width,
                              int height);

    int bytesPerPixel;
    char* pDevicePath;
    int fd;
    fb_var_screeninfo varInfo;
    fb_fix_screeninfo fixInfo;
    uint32_t* pScreen;
    CBitmapFont* pFontRegular;
    CBitmapFont* pFontBold;

  private:
    bool Open(const char* device);
    bool ReadScreenInfo(const char* device);
    bool HasSupportedLayout(const char* device) const;
    bool Map(const char* device);
    void LoadFonts();
    void Release();
    void CloseDevice();
    size_t MappingSize() const;
};

}  // namespace Vantor

#endif
