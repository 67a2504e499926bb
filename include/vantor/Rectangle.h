// SPDX-License-Identifier: MIT
#ifndef VANTOR_RECTANGLE_H
#define VANTOR_RECTANGLE_H

#include "vantor/Export.h"
#include "vantor/Frame.h"
#include "vantor/GObj.h"
#include "vantor/RGBA24.h"

namespace Vantor {

// A filled rectangle in its background colour (the foreground is kept, not drawn).
class VANTOR_API CRectangle : public CGObj {
  public:
    CRectangle(int x, int y, int width, int height, const CRGBA24& foreground,
               const CRGBA24& background);
    ~CRectangle() override = default;

    int Draw(CCanvas& canvas) override;
    int getSize(int& width, int& height) override;
    int getPosition(CPoint& position) override;
    int setPosition(const CPoint& position) override;

    CRGBA24 foreground;
    CRGBA24 background;
    CFrame frame;
};

}  // namespace Vantor

#endif
