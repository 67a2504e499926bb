#ifndef VANTOR_MKFONT_GLYPHSET_H
#define VANTOR_MKFONT_GLYPHSET_H

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace VantorFont {

// A converter failure the user can act on; main prints it and exits non-zero.
struct Refusal : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Fixed-cell glyphs by library code: each bitmap is height rows of width bytes, 0 or 1.
struct GlyphSet {
    int width = 0;
    int height = 0;
    std::map<int, std::vector<uint8_t>> glyphs;
};

// Where a source font's glyphs come from: by Unicode character, or (for a console font
// without a Unicode table) by position in the font.
class GlyphSource {
  public:
    virtual ~GlyphSource() = default;
    virtual int Width() const = 0;
    virtual int Height() const = 0;
    virtual bool HasUnicode() const = 0;
    // The glyph for a Unicode character, or for a position; false if the font lacks it.
    virtual bool Render(uint32_t character, std::vector<uint8_t>& bits) = 0;
};

}  // namespace VantorFont

#endif
