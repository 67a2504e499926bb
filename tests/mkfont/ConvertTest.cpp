// Fonts of every kind the converter reads, written by the tests, come out bit for bit,
// under the codes the code page gives their characters.
#include <unistd.h>

#include "FontFixtures.h"
#include "vantor/BitmapFont.h"

namespace MkfontTest {
namespace {

const auto npos = std::string::npos;

TEST_F(Mkfont, BdfConvertsBitForBit) {
    Write("small.bdf", Bdf({65, 66, 0xE9, 0x20AC}));
    ToolRun run = Tool(Path("small.bdf") + " -o " + Path("small.tf"));
    ASSERT_EQ(0, run.status) << run.output;
    EXPECT_NE(npos, run.output.find("3 glyphs of 5x7 pixels, 252 of 255 codes left out"));
    ExpectPattern(Path("small.tf"), {65, 66, 0xE9}, {65, 66, 0xE9});
    run = Tool(Path("small.bdf") + " --codepage latin9 -o " + Path("latin9.tf"));
    ASSERT_EQ(0, run.status) << run.output;
    ExpectPattern(Path("latin9.tf"), {65, 66, 0xA4, 0xE9}, {65, 66, 0x20AC, 0xE9});

    // A wider cell centres the glyph's advance: one empty column each side.
    run = Tool(Path("small.bdf") + " --size 7x7 --codes 65 -o " + Path("wide.tf"));
    ASSERT_EQ(0, run.status) << run.output;
    ExpectPattern(Path("wide.tf"), {65}, {65}, 1);
}

TEST_F(Mkfont, Psf2GoesThroughItsUnicodeTableAndTheCodePage) {
    const std::string psf = Psf2({65, 0x20AC, 0xE9, 0x2591});
    Write("small.psfu", psf);
    WriteGzip("small.psfu.gz", psf);
    struct Case {
        std::string arguments;
        std::vector<int> codes, characters;
    };
    const Case cases[] = {
        // Latin-1 has the currency sign at 0xA4, which the font lacks.
        {"small.psfu.gz --codes 65,164,233", {65, 0xE9}, {65, 0xE9}},
        {"small.psfu --codepage ISO-8859-15 --codes 65,164", {65, 0xA4}, {65, 0x20AC}},
        {"small.psfu.gz --codepage cp437", {65, 0x82, 0xB0}, {65, 0xE9, 0x2591}},
    };
    for (const Case& c : cases) {
        const ToolRun run = Tool(Path(c.arguments) + " -o " + Path("out.tf"));
        ASSERT_EQ(0, run.status) << run.output;
        ExpectPattern(Path("out.tf"), c.codes, c.characters);
    }
}

TEST_F(Mkfont, ConsoleFontsWithoutATableGoByGlyphPosition) {
    Write("plain.psf", Psf2({7, 8, 9}, false));
    ToolRun run = Tool(Path("plain.psf") + " --codepage CP437 -o " + Path("psf2.tf"));
    ASSERT_EQ(0, run.status) << run.output;
    EXPECT_NE(npos, run.output.find("codes are glyph positions")) << run.output;
    ExpectPattern(Path("psf2.tf"), {1, 2}, {8, 9});  // glyph 0 has no code

    WriteGzip("old.psf.gz", Psf1());
    run = Tool(Path("old.psf.gz") + " --codes 1-255 -o " + Path("psf1.tf"));
    ASSERT_EQ(0, run.status) << run.output;
    std::vector<int> all;
    for (int code = 1; code < 256; ++code) all.push_back(code);
    ExpectPattern(Path("psf1.tf"), all, all);
}

// Outline fonts from Debian's fonts-dejavu-core: a monospaced one fits an 8x16 cell whole;
// a proportional one needs a cell as wide as its widest glyph.
TEST_F(Mkfont, OutlinesFitTheCellOrAreRefused) {
    const std::string dejavu = "/usr/share/fonts/truetype/dejavu/";
    if (access((dejavu + "DejaVuSansMono.ttf").c_str(), R_OK) != 0) {
        GTEST_SKIP() << "fonts-dejavu-core is not installed";
    }
    const ToolRun mono = Tool(dejavu + "DejaVuSansMono.ttf --size 8x16 -o " + Path("mono.tf"));
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

    const std::string sans = dejavu + "DejaVuSans.ttf ";
    EXPECT_NE(npos, Tool(sans + "--size 16 -o " + Path("a.tf")).output.find("proportional"));
    EXPECT_NE(npos, Tool(sans + "--size 8x16 -o " + Path("b.tf")).output.find("wider than"));
    EXPECT_EQ(0, Tool(sans + "--size 20x16 -o " + Path("c.tf")).status);
}

}  // namespace
}  // namespace MkfontTest
