// SPDX-License-Identifier: MIT
// Fonts of every kind the converter reads, written by the tests, come out bit for bit,
// under the codes the code page gives their characters.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <numeric>

#include "FontFixtures.h"
#include "vantor/BitmapFont.h"

namespace MkfontTest {
namespace {

const auto npos = std::string::npos;

TEST_F(Mkfont, EveryInputKindConvertsBitForBit) {
    Write("small.bdf", Bdf({65, 66, 0xE9, 0x20AC}));
    Write("small.psfu", Psf2({65, 0x20AC, 0xE9, 0x2591}));
    Write("plain.psf", Psf2({7, 8, 9}, false));
    Write("old.psf", Psf1());
    ASSERT_EQ(0, Shell("gzip -k " + Path("small.psfu") + " " + Path("old.psf")).status);
    std::vector<int> all(255);
    std::iota(all.begin(), all.end(), 1);
    const struct {
        std::string arguments;
        std::vector<int> codes, characters;
        int columnOffset;
        const char* says;
    } cases[] = {
        {"small.bdf", {65, 66, 0xE9}, {65, 66, 0xE9}, 0, "3 glyphs of 5x7 pixels, 252 of 255"},
        {"small.bdf --codepage latin9", {65, 66, 0xA4, 0xE9}, {65, 66, 0x20AC, 0xE9}, 0, ""},
        // A wider cell centres the glyph's advance: one empty column each side.
        {"small.bdf --size 7x7 --codes 65", {65}, {65}, 1, ""},
        // Latin-1 has the currency sign at 0xA4, which the font lacks.
        {"small.psfu.gz --codes 65,164,233", {65, 0xE9}, {65, 0xE9}, 0, ""},
        {"small.psfu --codepage ISO-8859-15 --codes 65,164", {65, 0xA4}, {65, 0x20AC}, 0, ""},
        {"small.psfu.gz --codepage cp437", {65, 0x82, 0xB0}, {65, 0xE9, 0x2591}, 0, ""},
        // Unicode: a code is its character, up to U+10FFFF, ranges by name too.
        {"small.psfu --codepage Unicode --codes 65,latin1,0x2591",
         {65, 0xE9, 0x2591},
         {65, 0xE9, 0x2591},
         0,
         ""},
        // Console fonts without a table go by glyph position; glyph 0 gets no code.
        {"plain.psf --codepage CP437", {1, 2}, {8, 9}, 0, "codes are glyph positions"},
        {"old.psf.gz --codes 1-255", all, all, 0, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments);
        const ShellRun run = Tool(Path(c.arguments) + " -o " + Path("out.tf"));
        ASSERT_EQ(0, run.status) << run.output;
        EXPECT_NE(npos, run.output.find(c.says)) << run.output;
        ExpectPattern(Path("out.tf"), c.codes, c.characters, c.columnOffset);
    }
}

// Outline fonts from Debian's fonts-dejavu-core: a monospaced one fits an 8x16 cell whole;
// a proportional one needs a cell as wide as its widest glyph.
TEST_F(Mkfont, OutlinesFitTheCellOrAreRefused) {
    const std::string dejavu = "/usr/share/fonts/truetype/dejavu/";
    if (access((dejavu + "DejaVuSansMono.ttf").c_str(), R_OK) != 0) {
        GTEST_SKIP() << "fonts-dejavu-core is not installed";
    }
    const ShellRun mono = Tool(dejavu + "DejaVuSansMono.ttf --size 8x16 -o " + Path("mono.tf"));
    ASSERT_EQ(0, mono.status) << mono.output;
    EXPECT_EQ(npos, mono.output.find("cut off")) << mono.output;
    Vantor::CBitmapFont font(Path("mono.tf").c_str());
    ASSERT_EQ(8, font.header.glyphWidth);
    ASSERT_EQ(16, font.header.glyphHeight);
    const auto lowestInk = [&font](int code) {
        const unsigned char* bits = font.getGlyphFromCode(code);
        int lowest = -1;
        for (int i = 0; i < 8 * 16; ++i) lowest = bits[i] ? i / 8 : lowest;
        return lowest;
    };
    EXPECT_GT(lowestInk('A'), 8);               // the baseline is low in the cell
    EXPECT_GT(lowestInk('g'), lowestInk('A'));  // and the descender below it

    // A regular and a bold face made together come out at one size in one cell, though
    // the bold one alone fits only a smaller size.
    const ShellRun pair = Tool(dejavu + "DejaVuSansMono.ttf --size 12x24 -o " + Path("r.tf") +
                               " --bold " + dejavu + "DejaVuSansMono-Bold.ttf " + Path("b.tf"));
    const size_t first = pair.output.find("drawn at "), last = pair.output.rfind("drawn at ");
    ASSERT_LT(first, last) << pair.output;
    EXPECT_EQ(pair.output.substr(first, 12), pair.output.substr(last, 12)) << pair.output;

    const std::string sans = dejavu + "DejaVuSans.ttf ";
    EXPECT_NE(npos, Tool(sans + "--size 16 -o " + Path("a.tf")).output.find("proportional"));
    EXPECT_NE(npos, Tool(sans + "--size 8x16 -o " + Path("b.tf")).output.find("wider than"));
    EXPECT_EQ(0, Tool(sans + "--size 20x16 -o " + Path("c.tf")).status);
}

std::string Replace(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}

// A proportional BDF whose glyph 'A' is 7 pixels wide.
std::string ProportionalBdf() {
    std::string text = Replace(Bdf({65, 66}), "SPACING \"C\"", "SPACING \"P\"");
    text = Replace(text, "-c-50-", "-p-50-");
    return Replace(text, "DWIDTH 5 0\nBBX 5 7 0 -1", "DWIDTH 8 0\nBBX 7 7 0 -1");
}

// What the converter cannot do faithfully it refuses: a message naming the problem, exit
// status 1, no temporary file, and the font it would have replaced left as it was.
TEST_F(Mkfont, BadInputIsRefusedAndLeavesTheFilesAsTheyWere) {
    Write("small.bdf", Bdf({65}));
    Write("prop.bdf", ProportionalBdf());
    std::string psf = Psf2({65, 66, 67, 68});
    Write("short.psfu", psf.substr(0, psf.size() - 20));
    Write("huge.psfu", psf.replace(28, 4, "\xFF\xFF\xFF\x7F"));  // a width of 2^31-1
    mkdir(Path("adir").c_str(), 0755);
    Write("out.tf", "the old font");
    const std::string out = " -o " + Path("out.tf");
    const std::pair<std::string, std::string> cases[] = {
        {Path("missing.bdf") + out, "cannot read font file"},
        {Path("small.bdf") + " --codepage KOI9" + out, "unknown code page"},
        {Path("small.bdf") + " --codes 0-300" + out, "bad code list"},
        {Path("small.bdf") + " --codes greek" + out, "give --codepage Unicode"},
        {Path("small.bdf") + " --size 9" + out, "no 9-pixel size"},
        {Path("small.bdf"), "-o OUTPUT.tf"},
        {Path("small.bdf") + " --codes 66" + out, "none of the asked codes"},
        {Path("prop.bdf") + out, "proportional font"},
        {Path("prop.bdf") + " --size 6x7" + out, "U+0041 (code 65) is 7 pixels wide"},
        {Path("short.psfu") + out, "truncated"},
        {Path("huge.psfu") + out, "inconsistent"},
        {Path("short.psfu") + " --size 16" + out, "--size does not apply"},
        {Path("small.bdf") + " -o " + Path("none/out.tf"), "cannot write in the directory"},
        {Path("small.bdf") + " -o " + Path("adir"), "Is a directory"},
        {"--show " + Path("missing.tf"), "cannot load"},
        {"--show " + Path("a.tf") + " --sheet " + Path("a.tf") + " a.png", "cannot be combined"},
    };
    for (const auto& [arguments, message] : cases) {
        const ShellRun run = Tool(arguments);
        EXPECT_EQ(1, run.status) << arguments;
        EXPECT_NE(npos, run.output.find(message)) << arguments << "\n" << run.output;
        EXPECT_EQ(0u, run.output.find("vantor-mkfont: ")) << run.output;
    }
    EXPECT_EQ("the old font", VantorTest::ReadFile(Path("out.tf")));
    const std::filesystem::directory_iterator files(dir);
    EXPECT_EQ(6, std::distance(files, std::filesystem::directory_iterator()));  // as written
}

}  // namespace
}  // namespace MkfontTest
