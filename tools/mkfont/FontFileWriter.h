// SPDX-License-Identifier: MIT
#ifndef VANTOR_MKFONT_FONTFILEWRITER_H
#define VANTOR_MKFONT_FONTFILEWRITER_H

#include <cstdint>
#include <string>
#include <vector>

#include "GlyphSet.h"

namespace VantorFont {

// Writes the library's font file. The bytes go to a temporary name in the target's
// directory and are renamed over the target at the end, so a failed run never leaves half
// a font, and a font the library is reading is replaced whole.
class FontFileWriter {
  public:
    explicit FontFileWriter(std::string path) : path(std::move(path)) {}
    void Write(const GlyphSet& glyphs) const;  // throws Refusal

    static std::vector<uint8_t> Encode(const GlyphSet& glyphs);

  private:
    std::string DirectoryOfPath() const;

    std::string path;
};

}  // namespace VantorFont

#endif
