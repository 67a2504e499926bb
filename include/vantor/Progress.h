// SPDX-License-Identifier: MIT
#ifndef VANTOR_PROGRESS_H
#define VANTOR_PROGRESS_H

#include "vantor/Canvas.h"
#include "vantor/Enums.h"
#include "vantor/Export.h"

namespace Vantor {

class CAsciiText;
class CBitmapFont;
class CProgressBar;

// A window with one line of text above a progress bar. Both are objects of its canvas;
// the window keeps pointers to them to change them in place.
class VANTOR_API CProgress : public CCanvas {
  public:
    CProgress(CBitmapFont& font, const char* text, int x, int y, int width, int height);
    ~CProgress() override;

    void setProgress(float percent);
    void setText(const char* text, eAlignMode alignment);
    int ShowProgress(const CScreen& screen);
    int PaintProgress(const CScreen& screen);
    int ShowProgress(unsigned int* screen, int screenWidth, int screenHeight);
    int PaintProgress(unsigned int* screen, int screenWidth, int screenHeight);
    // Deletes the bar and the text like the canvas does and forgets them; the next
    // setProgress or setText makes fresh ones.
    void Clear();

    // The caption and the bar keep this far from the window's edges (the caption from the
    // top and left, the bar from the left, right and bottom); the bar is this high.
    static const int kInset = 5;
    static const int kBarHeight = 15;

    CBitmapFont& font;
    CProgressBar* pBar;
    CAsciiText* pText;

  private:
    void AddBar();
    void AddText(const char* text);
};

}  // namespace Vantor

#endif
