// SPDX-License-Identifier: MIT
#ifndef VANTOR_MKFONT_GLYPHSOURCE_H
#define VANTOR_MKFONT_GLYPHSOURCE_H

#include <cstdint>
#include <string>
#include <vector>

#include "Ink.h"

namespace VantorFont {

// A font being read. Glyphs are asked for by Unicode character when the font says which
// character each glyph is, otherwise by the font's own code (a console font's glyph
// position, a bitmap font's native encoding): then no code page applies.
class GlyphSource {
  public:
    virtual ~GlyphSource() = default;
    virtual int Height() const = 0;    // rows of the cell
    virtual int Baseline() const = 0;  // rows from the cell's top to the baseline
    virtual int Advance() const = 0;   // a fixed-width font's advance; 0 if proportional
    virtual bool HasUnicode() const = 0;
    // Every key the conversion will load, given once before the first Load: an outline
    // font picks its drawing size so that those glyphs fit.
    virtual void Prepare(const std::vector<uint32_t>& keys) { (void)keys; }
    // The size outlines are drawn at after Prepare, in pixels per em (0: a bitmap font),
    // and a smaller one to draw at instead, so that two faces of a family match.
    virtual int PixelsPerEm() const { return 0; }
    virtual void UsePixelsPerEm(int pixels) { (void)pixels; }
    // The glyph for a key; false if the font lacks it.
    virtual bool Load(uint32_t key, Ink& ink) = 0;
    // What the user should know about the conversion beyond the glyph counts.
    virtual std::vector<std::string> Notes() const { return {}; }
};

}  // namespace VantorFont

#endif
