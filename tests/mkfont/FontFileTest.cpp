// SPDX-License-Identifier: MIT
// The default fonts the library ships with, and how a user looks into a font file: it
// must show the glyph the library reads.
#include "FontFixtures.h"
#include "vantor/BitmapFont.h"

namespace MkfontTest {
namespace {

const std::string kRegular = std::string(VANTOR_FONT_DIR) + "/lr.tf";
const std::string kBold = std::string(VANTOR_FONT_DIR) + "/lb.tf";

int Ink(const unsigned char* bits, int size) {
    int ink = 0;
    for (int i = 0; i < size; ++i) ink += bits[i] != 0;
    return ink;
}

// Latin-1, Polish, Greek, Russian, the pictures menus are drawn with and the stand-in
// for a missing character.
TEST(DefaultFonts, RegularAndBoldHoldEuropesLettersInTheConfiguredCell) {
    Vantor::CBitmapFont regular(kRegular.c_str()), bold(kBold.c_str());
    const int w = regular.header.glyphWidth, cell = w * VANTOR_FONT_SIZE;
    EXPECT_EQ(VANTOR_FONT_SIZE, regular.header.glyphHeight);
    EXPECT_EQ(w, bold.header.glyphWidth);
    EXPECT_EQ(VANTOR_FONT_SIZE, bold.header.glyphHeight);
    for (const Vantor::CBitmapFont* font : {&regular, &bold}) {
        for (int code : {int('A'), int('g'), 0xE9, 0x142, 0x3A9, 0x416, 0x2193, 0x253C, 0xFFFD}) {
            const unsigned char* bits = font->getGlyphFromCode(code);
            ASSERT_NE(nullptr, bits) << font->pFileName << " " << code;
            EXPECT_GT(Ink(bits, cell), 8) << font->pFileName << " " << code;
        }
        EXPECT_EQ(nullptr, font->getGlyphFromCode(0x80));  // a C1 control in Latin-1
    }
    // é is e with an accent, and the bold font is heavier.
    EXPECT_GT(Ink(regular.getGlyphFromCode(0xE9), cell), Ink(regular.getGlyphFromCode('e'), cell));
    EXPECT_GT(Ink(bold.getGlyphFromCode('A'), cell), Ink(regular.getGlyphFromCode('A'), cell));
}

TEST_F(Mkfont, ShowDrawsTheGlyphsTheLibraryReads) {
    Vantor::CBitmapFont font(kRegular.c_str());
    const int w = font.header.glyphWidth, h = font.header.glyphHeight;
    const unsigned char* a = font.getGlyphFromCode('A');
    std::string art;
    for (int i = 0; i < w * h; ++i) {
        art += a[i] ? '#' : '.';
        if (i % w == w - 1) art += '\n';
    }
    const ShellRun show = Tool("--show " + kRegular + " 65,128");
    ASSERT_EQ(0, show.status) << show.output;
    EXPECT_NE(std::string::npos, show.output.find("code 65 (0x41) 'A'\n" + art)) << show.output;
    EXPECT_NE(std::string::npos, show.output.find("code 128 (0x80): not in the font"));
}

}  // namespace
}  // namespace MkfontTest
