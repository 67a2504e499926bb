// SPDX-License-Identifier: MIT
#ifndef VANTOR_GLYPH_H
#define VANTOR_GLYPH_H

#include "vantor/Export.h"
#include "vantor/GObj.h"
#include "vantor/Point.h"
#include "vantor/RGBA24.h"

namespace Vantor {

class CBitmapFont;

// One opaque character cell: every pixel of the cell is written, set bits in the
// foreground colour and clear bits in the background colour.
class VANTOR_API CGlyph : public CGObj {
  public:
    CGlyph(CBitmapFont& font, int code, const CPoint& position, const CRGBA24& foreground,
           const CRGBA24& background);
    ~CGlyph() override = default;

    int Draw(CCanvas& canvas) override;
    int getSize(int& width, int& height) override;
    int getPosition(CPoint& position) override;
    int setPosition(const CPoint& position) override;

    CRGBA24 foreground;
    CRGBA24 background;
    CBitmapFont* pFont;
    int code;
    CPoint position;
};

}  // namespace Vantor

#endif
