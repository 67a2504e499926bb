// SPDX-License-Identifier: MIT
#ifndef VANTOR_PROGRESSBAR_H
#define VANTOR_PROGRESSBAR_H

#include "vantor/Export.h"
#include "vantor/Frame.h"
#include "vantor/GObj.h"
#include "vantor/RGBA24.h"

namespace Vantor {

// A horizontal bar in an outlined box, filled from the left in proportion to a
// percentage between 0 and 100.
class VANTOR_API CProgressBar : public CGObj {
  public:
    CProgressBar(int x, int y, int width, int height);
    ~CProgressBar() override = default;

    void setProgress(float percent);
    int Draw(CCanvas& canvas) override;
    int getSize(int& width, int& height) override;
    int getPosition(CPoint& position) override;
    int setPosition(const CPoint& position) override;

    CRGBA24 foreground;
    CRGBA24 background;
    float progress;
    CFrame box;
    CFrame bar;
};

}  // namespace Vantor

#endif
