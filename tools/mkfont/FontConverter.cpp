// SPDX-License-Identifier: MIT
#include "FontConverter.h"

#include <algorithm>
#include <cstdio>

#include "CellPlacer.h"
#include "CodeList.h"
#include "FontFileWriter.h"
#include "FreeTypeReader.h"
#include "PsfReader.h"

namespace VantorFont {

// The cheap checks of what the user typed come before the font is read.
FontConverter::FontConverter(const CommandLine& line)
    : FontConverter(line, line.source, line.output) {}

FontConverter::FontConverter(const CommandLine& line, const std::string& from,
                             const std::string& to)
    : line(line),
      output(to),
      page(CodePage::Named(line.codePage)),
      codes(CodeList::Parse(line.codes, page.HighestCode())),
      source(Open(line, from)) {}

// FreeType has no reader for console fonts, so those are recognised by their magic first.
std::unique_ptr<GlyphSource> FontConverter::Open(const CommandLine& line, const std::string& from) {
    if (PsfReader::LooksLikePsf(from)) {
        if (line.width > 0 || line.height > 0) {
            throw Refusal("a console font is converted as drawn: --size does not apply");
        }
        return std::unique_ptr<GlyphSource>(new PsfReader(from));
    }
    return std::unique_ptr<GlyphSource>(new FreeTypeReader(from, line.width, line.height));
}

std::string FontConverter::Run() {
    Prepare();
    LoadInks();
    return Write(CellWidth());
}

// Each face alone would be drawn at the largest size it fits; the bold one, being wider,
// often fits one size less, and would then look smaller than the regular face beside it.
std::string FontConverter::RunFamily(const CommandLine& line) {
    if (line.boldSource.empty()) return FontConverter(line).Run();
    FontConverter regular(line), bold(line, line.boldSource, line.boldOutput);
    regular.Prepare();
    bold.Prepare();
    const int pixels = std::min(regular.source->PixelsPerEm(), bold.source->PixelsPerEm());
    regular.source->UsePixelsPerEm(pixels);
    bold.source->UsePixelsPerEm(pixels);
    if (regular.source->Height() != bold.source->Height()) {
        throw Refusal("the regular and bold fonts come in different heights (" +
                      std::to_string(regular.source->Height()) + " and " +
                      std::to_string(bold.source->Height()) + "): give --size");
    }
    regular.LoadInks();
    bold.LoadInks();
    const int width = std::max(regular.CellWidth(), bold.CellWidth());
    return regular.Write(width) + "\n" + bold.Write(width);
}

void FontConverter::Prepare() {
    std::vector<uint32_t> keys;
    for (int code : codes) keys.push_back(Key(code));
    source->Prepare(keys);
}

std::string FontConverter::Write(int width) {
    const GlyphSet set = Place(width);
    FontFileWriter(output).Write(set);
    std::string summary = output + ": " + std::to_string(set.Count()) + " glyphs of " +
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
