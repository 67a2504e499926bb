#include "FontConverter.h"

#include <cstdio>

#include "CellPlacer.h"
#include "CodeList.h"
#include "FontFileWriter.h"
#include "FreeTypeReader.h"
#include "PsfReader.h"

namespace VantorFont {

// The cheap checks of what the user typed come before the font is read.
FontConverter::FontConverter(const CommandLine& line)
    : line(line),
      page(CodePage::Named(line.codePage)),
      codes(CodeList::Parse(line.codes, page.HighestCode())),
      source(Open(line)) {}

// FreeType has no reader for console fonts, so those are recognised by their magic first.
std::unique_ptr<GlyphSource> FontConverter::Open(const CommandLine& line) {
    if (PsfReader::LooksLikePsf(line.source)) {
        if (line.width > 0 || line.height > 0) {
            throw Refusal("a console font is converted as drawn: --size does not apply");
        }
        return std::unique_ptr<GlyphSource>(new PsfReader(line.source));
    }
    return std::unique_ptr<GlyphSource>(new FreeTypeReader(line.source, line.width, line.height));
}

std::string FontConverter::Run() {
    LoadInks();
    const GlyphSet set = Place(CellWidth());
    FontFileWriter(line.output).Write(set);
    std::string summary = line.output + ": " + std::to_string(set.Count()) + " glyphs of " +
                          std::to_string(set.Width()) + "x" + std::to_string(set.Height()) +
                          " pixels";
    if (missing > 0) {
        summary += ", " + std::to_string(missing) + " of " + std::to_string(codes.size()) +
                   " codes left out (not in the font)";
    }
    for (const std::string& note : source->Notes()) summary += "; " + note;
    for (const std::string& note : notes) summary += "; " + note;
    return summary;
}

void FontConverter::LoadInks() {
    std::vector<uint32_t> keys;
    for (int code : codes) keys.push_back(Key(code));
    source->Prepare(keys);
    for (int code : codes) {
        Ink ink;
        if (source->Load(Key(code), ink)) {
            inks[code] = std::move(ink);
        } else {
            ++missing;
        }
    }
}

// The user's width, else the font's advance, widened to the widest glyph: an outline
// glyph drawn at a small size may come out a pixel wider than the advance.
int FontConverter::CellWidth() {
    if (line.width > 0) return line.width;
    const int advance = source->Advance();
    if (advance <= 0) {
        throw Refusal(
            "a proportional font (glyphs of different widths): give the cell width "
            "with --size WIDTHxHEIGHT; glyphs wider than it are refused");
    }
    int width = advance, widest = 0;
    for (const auto& entry : inks) {
        if (entry.second.width > width) width = entry.second.width, widest = entry.first;
    }
    if (width > advance) {
        notes.push_back("cell widened from the font's advance of " + std::to_string(advance) +
                        " to " + std::to_string(width) + " pixels for glyph " + Name(widest));
    }
    return width;
}

GlyphSet FontConverter::Place(int width) {
    GlyphSet set(width, source->Height());
    CellPlacer placer(width, source->Height(), source->Baseline());
    for (const auto& entry : inks)
        set.Add(entry.first, placer.Place(entry.second, Name(entry.first)));
    if (placer.MovedGlyphs() > 0) {
        notes.push_back("glyphs moved sideways to stay inside the cell: " +
                        std::to_string(placer.MovedGlyphs()));
    }
    if (placer.ClippedRows() > 0) {
        notes.push_back("glyph rows cut off at the cell's top or bottom: " +
                        std::to_string(placer.ClippedRows()));
    }
    return set;
}

// What the source font is asked for: a character, or its own code when it has no
// Unicode map.
uint32_t FontConverter::Key(int code) const {
    return source->HasUnicode() ? page.ToUnicode(code) : uint32_t(code);
}

// How messages name a glyph: by character where the font has them, always by code.
std::string FontConverter::Name(int code) const {
    char text[32];
    if (source->HasUnicode()) {
        std::snprintf(text, sizeof(text), "U+%04X (code %d)", unsigned(page.ToUnicode(code)), code);
    } else {
        std::snprintf(text, sizeof(text), "code %d", code);
    }
    return text;
}

}  // namespace VantorFont
