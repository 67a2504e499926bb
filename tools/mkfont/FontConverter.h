// SPDX-License-Identifier: MIT
#ifndef VANTOR_MKFONT_FONTCONVERTER_H
#define VANTOR_MKFONT_FONTCONVERTER_H

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "CodePage.h"
#include "CommandLine.h"
#include "GlyphSet.h"
#include "GlyphSource.h"

namespace VantorFont {

// One conversion: reads the asked codes' glyphs from the source font through the code
// page, decides the cell, puts each glyph into it, writes the font file and says in one
// line what it did.
class FontConverter {
  public:
    explicit FontConverter(const CommandLine& line);  // throws Refusal
    std::string Run();                                // throws Refusal; the summary line
    // The regular face and, given --bold, the bold one: in one cell, drawn at one size
    // (the larger that both fit), so bold text lines up with regular text.
    static std::string RunFamily(const CommandLine& line);

  private:
    FontConverter(const CommandLine& line, const std::string& from, const std::string& to);
    static std::unique_ptr<GlyphSource> Open(const CommandLine& line, const std::string& from);
    void Prepare();
    void LoadInks();
    std::string Write(int width);
    int CellWidth();
    GlyphSet Place(int width);
    uint32_t Key(int code) const;
    std::string Name(int code) const;

    const CommandLine& line;
    std::string output;
    CodePage page;
    std::vector<int> codes;
    std::unique_ptr<GlyphSource> source;
    std::map<int, Ink> inks;
    int missing = 0;
    std::vector<std::string> notes;
};

}  // namespace VantorFont

#endif
