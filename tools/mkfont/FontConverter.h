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

  private:
    static std::unique_ptr<GlyphSource> Open(const CommandLine& line);
    void LoadInks();
    int CellWidth();
    GlyphSet Place(int width);
    uint32_t Key(int code) const;
    std::string Name(int code) const;

    const CommandLine& line;
    CodePage page;
    std::vector<int> codes;
    std::unique_ptr<GlyphSource> source;
    std::map<int, Ink> inks;
    int missing = 0;
    std::vector<std::string> notes;
};

}  // namespace VantorFont

#endif
