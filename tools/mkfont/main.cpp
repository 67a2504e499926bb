// SPDX-License-Identifier: MIT
// vantor-mkfont: makes the library's font files from bitmap, outline and console fonts,
// and shows what a font file holds.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "CodeList.h"
#include "CommandLine.h"
#include "FontConverter.h"
#include "SheetWriter.h"
#include "TextArt.h"
#include "vantor/BitmapFont.h"

using namespace VantorFont;

namespace {

// Read with the library's own loader, so what is shown is what the library will draw.
std::unique_ptr<Vantor::CBitmapFont> Load(const std::string& path) {
    try {
        return std::unique_ptr<Vantor::CBitmapFont>(new Vantor::CBitmapFont(path.c_str()));
    } catch (const std::exception& error) {
        throw Refusal("cannot load " + path + ": " + error.what());
    }
}

void Show(const CommandLine& line) {
    const auto font = Load(line.font);
    const TextArt art(*font);
    std::printf("%s: %s", line.font.c_str(), art.Header().c_str());
    std::vector<int> codes(font->pGlyphCodes, font->pGlyphCodes + font->header.glyphCount);
    std::sort(codes.begin(), codes.end());
    if (!line.showCodes.empty()) codes = CodeList::Parse(line.showCodes, 0x10FFFF);
    for (int code : codes) std::printf("\n%s", art.Glyph(code).c_str());
}

void Sheet(const CommandLine& line) {
    const auto font = Load(line.font);
    SheetWriter(*font, line.scale).Write(line.output);
    std::printf("%s: sheet of %s, %d glyphs\n", line.output.c_str(), line.font.c_str(),
                font->header.glyphCount);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const CommandLine line = CommandLine::Parse(argc, argv);
        switch (line.mode) {
            case CommandLine::Mode::Help:
                std::fputs(CommandLine::Usage(), stdout);
                break;
            case CommandLine::Mode::Show:
                Show(line);
                break;
            case CommandLine::Mode::Sheet:
                Sheet(line);
                break;
            case CommandLine::Mode::Convert:
                std::printf("%s\n", FontConverter::RunFamily(line).c_str());
                break;
        }
        return 0;
    } catch (const std::exception& error) {  // Refusal, and allocation failures
        std::fprintf(stderr, "vantor-mkfont: %s\n", error.what());
        return 1;
    }
}
