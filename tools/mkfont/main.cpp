// vantor-mkfont: makes the library's font files from bitmap, outline and console fonts,
// and shows what a font file holds.
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "CodeList.h"
#include "CodePage.h"
#include "FontFileWriter.h"
#include "FreeTypeReader.h"
#include "PsfReader.h"
#include "SheetWriter.h"
#include "vantor/BitmapFont.h"

using namespace VantorFont;

namespace {

const char kUsage[] =
    "usage: vantor-mkfont [options] SOURCE -o OUTPUT.tf\n"
    "       vantor-mkfont --show FONT.tf [CODES]\n"
    "       vantor-mkfont --sheet FONT.tf OUTPUT.png [--scale N]\n"
    "\n"
    "Converts a font into the fixed-cell font file that libvantor loads\n"
    "(/usr/share/fonts/vantor/lr.tf regular, lb.tf bold).\n"
    "SOURCE: BDF, PCF, PCF.gz or OTB bitmap fonts and TrueType/OpenType outlines (through\n"
    "FreeType), or Linux console fonts PSF1/PSF2 (.psf, .psfu, gzipped or not).\n"
    "\n"
    "  -o, --output PATH   the font file to write (written whole or not at all)\n"
    "  --codes LIST        codes to include, e.g. 32-126,160-255 (default 1-255)\n"
    "  --codepage NAME     what the codes mean: ISO-8859-1 (default), ISO-8859-15, CP437\n"
    "  --size WxH | H      cell size in pixels; required for outline fonts, picks a size\n"
    "                      of a bitmap font that has several\n"
    "  --show FONT [CODES] print the header and the glyphs of CODES (default 32-126)\n"
    "  --sheet FONT PNG    draw all 256 codes as a 16x16 sheet (--scale N, default 2)\n"
    "  -h, --help          this text\n";

struct Options {
    std::string source, output, codes = "1-255", codePage = "ISO-8859-1";
    int width = 0, height = 0, scale = 2;
    std::string show, showCodes = "32-126", sheet, sheetOutput;
};

std::string Value(int& i, int argc, char** argv) {
    if (i + 1 >= argc) throw Refusal(std::string(argv[i]) + " needs a value");
    return argv[++i];
}

void ParseSize(const std::string& text, Options& options) {
    if (std::sscanf(text.c_str(), "%dx%d", &options.width, &options.height) == 2) {
    } else if (std::sscanf(text.c_str(), "%d", &options.height) == 1) {
        options.width = 0;
    } else {
        throw Refusal("bad --size \"" + text + "\": give WIDTHxHEIGHT or HEIGHT");
    }
    if (options.height < 1 || options.height > 256 || options.width < 0 || options.width > 256) {
        throw Refusal("--size out of range (1 to 256 pixels)");
    }
}

Options Parse(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "-o" || arg == "--output") {
            options.output = Value(i, argc, argv);
        } else if (arg == "--codes") {
            options.codes = Value(i, argc, argv);
        } else if (arg == "--codepage") {
            options.codePage = Value(i, argc, argv);
        } else if (arg == "--size") {
            ParseSize(Value(i, argc, argv), options);
        } else if (arg == "--scale") {
            options.scale = std::atoi(Value(i, argc, argv).c_str());
            if (options.scale < 1 || options.scale > 16) throw Refusal("--scale is 1 to 16");
        } else if (arg == "--show") {
            options.show = Value(i, argc, argv);
            if (i + 1 < argc && argv[i + 1][0] != '-') options.showCodes = argv[++i];
        } else if (arg == "--sheet") {
            options.sheet = Value(i, argc, argv);
            options.sheetOutput = Value(i, argc, argv);
        } else if (arg.size() > 1 && arg[0] == '-') {
            throw Refusal("unknown option " + arg + " (see --help)");
        } else if (options.source.empty()) {
            options.source = arg;
        } else {
            throw Refusal("more than one source font given");
        }
    }
    return options;
}

GlyphSet Convert(GlyphSource& source, const std::vector<int>& codes, const CodePage& page,
                 int& missing) {
    GlyphSet set;
    set.width = source.Width();
    set.height = source.Height();
    missing = 0;
    for (int code : codes) {
        std::vector<uint8_t> bits;
        const uint32_t character = source.HasUnicode() ? page.ToUnicode(code) : uint32_t(code);
        if (source.Render(character, bits)) {
            set.glyphs[code] = bits;
        } else {
            ++missing;
        }
    }
    return set;
}

int MakeFont(const Options& options) {
    if (options.source.empty() || options.output.empty()) {
        throw Refusal("give a source font and -o OUTPUT.tf (see --help)");
    }
    const CodePage page = CodePage::Named(options.codePage);
    const std::vector<int> codes = ParseCodes(options.codes);
    std::unique_ptr<GlyphSource> source;
    FreeTypeReader* outline = nullptr;
    if (PsfReader::LooksLikePsf(options.source)) {
        source.reset(new PsfReader(options.source));
    } else {
        outline = new FreeTypeReader(options.source, options.width, options.height);
        source.reset(outline);
    }
    int missing = 0;
    const GlyphSet set = Convert(*source, codes, page, missing);
    WriteFontFile(options.output, set);
    std::printf("%s: %zu glyphs of %dx%d pixels", options.output.c_str(), set.glyphs.size(),
                set.width, set.height);
    if (missing > 0) std::printf(", %d codes left out (not in the font)", missing);
    if (outline != nullptr && outline->clippedRows > 0) {
        std::printf(", %d glyph rows clipped at the cell's top or bottom", outline->clippedRows);
    }
    std::printf("\n");
    return 0;
}

int Show(const Options& options) {
    Vantor::CBitmapFont font(options.show.c_str());
    const auto& h = font.header;
    std::printf("%s: %d glyphs, %d pixels wide, %d high\n", options.show.c_str(), h.glyphCount,
                h.glyphWidth, h.glyphHeight);
    for (int code : ParseCodes(options.showCodes)) {
        const unsigned char* bits = font.getGlyphFromCode(code);
        std::printf("\ncode %d (0x%02X)%s\n", code, code, bits ? "" : ": not in the font");
        for (int r = 0; bits && r < h.glyphHeight; ++r) {
            for (int c = 0; c < h.glyphWidth; ++c)
                std::putchar(bits[r * h.glyphWidth + c] ? '#' : '.');
            std::putchar('\n');
        }
    }
    return 0;
}

int Sheet(const Options& options) {
    Vantor::CBitmapFont font(options.sheet.c_str());
    WriteSheet(font, options.sheetOutput, options.scale);
    std::printf("%s: sheet of %s\n", options.sheetOutput.c_str(), options.sheet.c_str());
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "-h") || !std::strcmp(argv[i], "--help")) {
            std::fputs(kUsage, stdout);
            return 0;
        }
    }
    try {
        const Options options = Parse(argc, argv);
        if (!options.show.empty()) return Show(options);
        if (!options.sheet.empty()) return Sheet(options);
        return MakeFont(options);
    } catch (const std::exception& error) {  // Refusal, and the library's font errors
        std::fprintf(stderr, "vantor-mkfont: %s\n", error.what());
        return 1;
    }
}
