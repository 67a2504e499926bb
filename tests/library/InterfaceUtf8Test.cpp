// SPDX-License-Identifier: MIT
// UTF-8 text through the C interface: which glyph lands in each cell, what stands in for
// a character the font lacks, and that a text keeps the meaning it was handed over with.
#include <iterator>

#include "InterfaceFixture.h"
#include "TestSupport.h"
#include "vantor_platform.h"

namespace {

const uint32_t kInk = 0x00FF00, kPaper = 0x000044;
const int kNone = -1;  // a cell left as it was

}  // namespace

// Beside codes 1 to 255 (all but 127) the fonts have Zhe and Omega; only the regular one
// has the replacement character.
class Utf8 : public Interface {
  protected:
    void SetUp() override {
        Interface::SetUp();
        for (int font = 0; font < 2; ++font) {
            std::vector<int> codes = {0x416, 0x3A9, font == 0 ? 0xFFFD : 0x3A9};
            for (int code = 1; code < 256; ++code) {
                if (code != 127) codes.push_back(code);
            }
            const std::vector<unsigned char> bytes = VantorTest::FontBytes(8, 16, codes);
            const char* path =
                font == 0 ? "/usr/share/fonts/vantor/lr.tf" : "/usr/share/fonts/vantor/lb.tf";
            vp_file_add(path, bytes.data(), bytes.size());
        }
        InitFramebuffer("/dev/fb0");
        InitCanvas(0, 0, kWidth, kHeight);
    }
};

TEST_F(Utf8, EachCharacterTakesOneCell) {
    EXPECT_EQ(-1, setTextEncoding(2));
    ASSERT_EQ(0, setTextEncoding(VANTOR_TEXT_UTF8));
    const struct {
        const char* text;
        std::vector<int> cells;
        int font;
    } cases[] = {
        {"Gr\xc3\xbc\xc3\x9f"
         "e",
         {'G', 'r', 0xFC, 0xDF, 'e'},
         0},
        {"\xd0\x96\xce\xa9!", {0x416, 0x3A9, '!'}, 0},
        {"caf\xe9 \xc3", {'c', 'a', 'f', 0xE9, ' ', 0xC3}, 0},        // Latin-1 bytes stay Latin-1
        {"\xc0\xaf\xe0\x80\xaf", {0xC0, 0xAF, 0xE0, 0x80, 0xAF}, 0},  // overlong forms
        {"\xed\xa0\x80", {0xED, 0xA0, 0x80}, 0},                      // a surrogate
        {"\xf4\x90\x80\x80", {0xF4, 0x90, 0x80, 0x80}, 0},            // past U+10FFFF
        {"\xe2\x82"
         "A\xbf",
         {0xE2, 0x82, 'A', 0xBF},
         0},                                                    // cut short, stray
        {"\xe4\xb8\x80\xf0\x9f\x98\x80", {0xFFFD, 0xFFFD}, 0},  // not in the font
        {"\xe4\xb8\x80\x7f"
         "A",
         {'?', kNone, 'A'},
         1},  // no U+FFFD; control
    };
    for (size_t i = 0; i < std::size(cases); ++i) {
        WriteTextWithBackground(0, int(i) * 20, cases[i].text, kInk, kPaper, cases[i].font);
    }
    setTextEncoding(VANTOR_TEXT_BYTES);  // texts handed over keep their meaning
    Update();
    for (size_t i = 0; i < std::size(cases); ++i) {
        const std::vector<int>& cells = cases[i].cells;
        for (size_t k = 0; k <= cells.size(); ++k) {  // and nothing after the text
            const int code = k < cells.size() ? cells[k] : kNone, x = int(k) * 8, y = int(i) * 20;
            EXPECT_TRUE(code == kNone ? Pixel(x, y) == 0 : CellShows(code, x, y, kInk, kPaper))
                << cases[i].text << " cell " << k;
        }
    }
}

// The same letters give the same pixels however they were written, aligned or not.
TEST_F(Utf8, Utf8AndLatin1TextGiveTheSamePixels) {
    const auto draw = [this](int encoding, const char* text) {
        Clear();
        setTextEncoding(encoding);
        WriteText(3, 5, text, 0xFFFFFF, 0);
        WriteAlignedTextWithBackground(0, 40, text, kInk, kPaper, 1, eAlignCenter | eAlignFillLine);
        WriteAlignedTextWithBackground(2, 80, text, kInk, kPaper, 0, eAlignRight);
        Update();
        return Snapshot();
    };
    const std::vector<uint32_t> latin1 = draw(VANTOR_TEXT_BYTES,
                                              "Gr\xfc\xdf"
                                              "e");
    EXPECT_TRUE(latin1 == draw(VANTOR_TEXT_UTF8,
                               "Gr\xc3\xbc\xc3\x9f"
                               "e"));
}
