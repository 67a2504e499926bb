// SPDX-License-Identifier: MIT
#ifndef VANTOR_ASCIITEXT_H
#define VANTOR_ASCIITEXT_H

#include "vantor/Enums.h"
#include "vantor/Export.h"
#include "vantor/GObj.h"
#include "vantor/Point.h"
#include "vantor/RGBA24.h"
#include "vantor/TextCodes.h"

namespace Vantor {

class CBitmapFont;

// One line of text in one font, drawn as a row of opaque glyph cells, one cell per
// character. The text keeps its own copy of the string, decoded into character codes in
// the encoding that was in force when it was handed over; the font is borrowed and must
// outlive it.
class VANTOR_API CAsciiText : public CGObj {
  public:
    explicit CAsciiText(CBitmapFont& font);
    CAsciiText(const char* text, CBitmapFont& font);
    CAsciiText(const char* text, CBitmapFont& font, const CPoint& position);
    CAsciiText(const char* text, CBitmapFont& font, const CPoint& position,
               const CRGBA24& foreground);
    CAsciiText(const char* text, CBitmapFont& font, const CPoint& position,
               const CRGBA24& foreground, const CRGBA24& background);
    ~CAsciiText() override;
    CAsciiText(const CAsciiText&) = delete;
    CAsciiText& operator=(const CAsciiText&) = delete;

    int Draw(CCanvas& canvas) override;
    int getSize(int& width, int& height) override;
    int getPosition(CPoint& position) override;
    int setPosition(const CPoint& position) override;
    virtual eAlignMode getAlignment();
    virtual void setAlignment(eAlignMode alignment);

    void setText(const char* text);
    const char* getText() const { return pText; }
    // Paints the text's box at its stored position in the background colour.
    void Clear(CCanvas& canvas);

    CRGBA24 foreground;
    CRGBA24 background;
    CBitmapFont& font;
    char* pText;
    CPoint position;
    eAlignMode alignment;
    // The string's character codes, and the encoding they were read in.
    std::u32string codes;
    eTextEncoding encoding;

  private:
    void Take(const char* text);
    const unsigned char* GlyphOf(char32_t code) const;
    long long TextWidth() const;
    long long FirstCellX(int canvasWidth) const;
    void FillBand(CCanvas& canvas) const;
};

}  // namespace Vantor

#endif
