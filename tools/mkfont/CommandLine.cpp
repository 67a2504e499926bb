// SPDX-License-Identifier: MIT
#include "CommandLine.h"

#include <cstdlib>

#include "Refusal.h"

namespace VantorFont {

namespace {

const char kUsage[] =
    "usage: vantor-mkfont [OPTIONS] SOURCE -o OUTPUT.tf\n"
    "       vantor-mkfont --show FONT.tf [CODES]\n"
    "       vantor-mkfont --sheet FONT.tf OUTPUT.png [--scale N]\n"
    "\n"
    "Converts a font into the fixed-cell font file that libvantor draws text with\n"
    "(/usr/share/fonts/vantor/lr.tf regular, lb.tf bold), or shows what such a file holds.\n"
    "\n"
    "SOURCE is a bitmap font FreeType reads (BDF, PCF, PCF.gz, OTB), a TrueType or OpenType\n"
    "outline font (rendered black and white), or a Linux console font (PSF1 or PSF2: .psf,\n"
    ".psfu, gzipped or not).\n"
    "\n"
    "  -o, --output PATH    the font file to write; written under a temporary name in the\n"
    "                       same directory and renamed at the end, so it is whole or absent\n"
    "  --codes LIST         codes to include, ranges and single codes, decimal or 0x hex,\n"
    "                       1 to 255 (default 1-255), e.g. --codes 32-126,160-255; with\n"
    "                       --codepage Unicode up to 0x10FFFF, and named ranges: ascii,\n"
    "                       latin1, latin-ext-a, greek, cyrillic, arrows, box, blocks,\n"
    "                       shapes, replacement (U+FFFD)\n"
    "  --codepage NAME      the code page saying which character each code is:\n"
    "                       ISO-8859-1 (default, also latin1), ISO-8859-15 (latin9),\n"
    "                       CP437 (ibm437), or Unicode: every code is that character, as\n"
    "                       the library looks up UTF-8 text. A console font without a\n"
    "                       Unicode table and a bitmap font without a Unicode map are\n"
    "                       taken by their own codes.\n"
    "  --bold SOURCE PATH   also convert SOURCE, the family's bold face, into PATH, in the\n"
    "                       same cell and drawn at the same size as the regular face (for\n"
    "                       outlines the larger size at which both fit)\n"
    "  --size WxH | H       the cell in pixels. Outline fonts need it: they are drawn at the\n"
    "                       largest size whose line fits H rows (and, for fixed-width fonts,\n"
    "                       whose advance fits W columns); W defaults to the font's advance.\n"
    "                       For a bitmap font H picks one of its sizes and W widens the cell;\n"
    "                       a proportional font needs W.\n"
    "  --show FONT [CODES]  print FONT's header and its glyphs as '#' and '.' (default:\n"
    "                       every code it holds)\n"
    "  --sheet FONT PNG     draw codes 0 to 255 of FONT as a 16x16 grid into PNG; codes the\n"
    "                       font lacks are light grey\n"
    "  --scale N            pixels per font pixel on the sheet, 1 to 16 (default 2)\n"
    "  -h, --help           this text\n"
    "\n"
    "Codes whose character the font lacks are left out and counted in the summary line.\n"
    "Nothing is written, and the exit status is 1, for a missing or unreadable font, an\n"
    "unknown code page, a bad option, or a glyph wider than the cell (a proportional font:\n"
    "give a wider --size). Outline glyph rows that fall outside the cell are cut off and\n"
    "counted.\n"
    "\n"
    "examples:\n"
    "  vantor-mkfont /usr/share/fonts/X11/misc/ter-u16n_unicode.pcf.gz -o lr.tf\n"
    "  vantor-mkfont DejaVuSansMono.ttf --size 12x24 --codes 32-126,160-255 -o lr.tf \\\n"
    "      --bold DejaVuSansMono-Bold.ttf lb.tf\n"
    "  vantor-mkfont Lat15-Terminus16.psf.gz --codepage ISO-8859-15 -o lr.tf\n"
    "  vantor-mkfont ter-u16n_unicode.pcf.gz --codepage Unicode \\\n"
    "      --codes 1-255,latin-ext-a,greek,cyrillic,arrows,box,replacement -o lr.tf\n"
    "  vantor-mkfont --show lr.tf 65,0xE9\n";

int ParseInt(const std::string& text, const std::string& what, int low, int high) {
    char* end = nullptr;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || value < low || value > high) {
        throw Refusal("bad " + what + " \"" + text + "\": give " + std::to_string(low) + " to " +
                      std::to_string(high));
    }
    return int(value);
}

}  // namespace

const char* CommandLine::Usage() {
    return kUsage;
}

CommandLine CommandLine::Parse(int argc, const char* const* argv) {
    CommandLine line;
    // Help wins over everything else on the line, even over mistakes.
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i];
        if (option == "-h" || option == "--help") line.mode = Mode::Help;
    }
    if (line.mode == Mode::Help) return line;
    for (int i = 1; i < argc; ++i) line.Take(argv[i], i, argc, argv);
    line.Check();
    return line;
}

void CommandLine::Take(const std::string& option, int& i, int argc, const char* const* argv) {
    const auto value = [&]() -> std::string {
        if (i + 1 >= argc) throw Refusal(option + " needs a value (see --help)");
        return argv[++i];
    };
    if (option == "-o" || option == "--output") {
        output = value();
    } else if (option == "--bold") {
        boldSource = value();
        boldOutput = value();
    } else if (option == "--codes") {
        codes = value();
    } else if (option == "--codepage") {
        codePage = value();
    } else if (option == "--size") {
        ParseSize(value());
    } else if (option == "--scale") {
        scale = ParseInt(value(), "--scale", 1, 16);
    } else if (option == "--show") {
        SetMode(Mode::Show, option);
        font = value();
        if (i + 1 < argc && argv[i + 1][0] != '-') showCodes = argv[++i];
    } else if (option == "--sheet") {
        SetMode(Mode::Sheet, option);
        font = value();
        output = value();
    } else if (option.size() > 1 && option[0] == '-') {
        throw Refusal("unknown option " + option + " (see --help)");
    } else if (source.empty()) {
        source = option;
    } else {
        throw Refusal("more than one source font given: " + source + " and " + option);
    }
}

void CommandLine::SetMode(Mode wanted, const std::string& option) {
    if (mode != Mode::Convert) throw Refusal(option + " cannot be combined with another command");
    mode = wanted;
}

// "8x16" sets both; "16" only the height, leaving the width to the font.
void CommandLine::ParseSize(const std::string& text) {
    const size_t x = text.find_first_of("xX");
    if (x != std::string::npos) width = ParseInt(text.substr(0, x), "--size width", 1, 256);
    height = ParseInt(x == std::string::npos ? text : text.substr(x + 1), "--size height", 1, 256);
}

void CommandLine::Check() const {
    if (mode == Mode::Convert && (source.empty() || output.empty())) {
        throw Refusal("give a source font and -o OUTPUT.tf (see --help)");
    }
    if (mode != Mode::Convert && !boldSource.empty()) {
        throw Refusal("--bold goes with a conversion, not with --show or --sheet");
    }
    if ((mode == Mode::Show || mode == Mode::Sheet) && !source.empty()) {
        throw Refusal("--show and --sheet read a .tf file and take no source font");
    }
}

}  // namespace VantorFont
