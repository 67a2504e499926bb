#ifndef VANTOR_MKFONT_FONTFILEWRITER_H
#define VANTOR_MKFONT_FONTFILEWRITER_H

#include <string>

#include "GlyphSet.h"

namespace VantorFont {

// Writes the library's font file. The bytes go to a temporary name in the target's
// directory first and are renamed at the end, so a failure never leaves half a font.
void WriteFontFile(const std::string& path, const GlyphSet& glyphs);  // throws Refusal

}  // namespace VantorFont

#endif
