// SPDX-License-Identifier: MIT
// UTF-8 text through the C interface: which glyph lands in each cell, what stands in for
// a character the font lacks, and that the choice holds for text already handed over.
#include "InterfaceFixture.h"
#include "TestSupport.h"
#include "vantor_platform.h"

namespace {

const uint32_t kInk = 0x00FF00, kPaper = 0x000044;
const int kNone = -1;  // a cell left as it was

// The regular font has Zhe, Omega and the replacement character beside codes 1 to 255
// (all but 127); the bold one lacks the replacement character.
void AddFont(const char* name, bool replacement) {
    std::vector<int> codes;
    for (int code = 1; code < 256; ++code) {
        if (code != 127) codes.push_back(code);
    }
    codes.insert(codes.end(), {0x416, 0x3A9});
    if (replacement) codes.push_back(0xFFFD);
    const std::vector<unsigned char> bytes = VantorTest::FontBytes(8, 16, codes);
    vp_file_add((std::string("/usr/share/fonts/vantor/") + name).c_str(), bytes.data(),
                bytes.size());
}

}  // namespace

class Utf8 : public Interface {
  protected:
    void SetUp() override {
        Interface::SetUp();
        AddFont("lr.tf", true);
        AddFont("lb.tf", false);
        InitFramebuffer("/dev/fb0");
        InitCanvas(0, 0, kWidth, kHeight);
    }

    void ExpectCells(const std::vector<int>& codes, int y, const char* what) {
        for (size_t i = 0; i < codes.size(); ++i) {
            if (codes[i] == kNone) {
                EXPECT_EQ(0u, Pixel(int(i) * 8, y)) << what << " cell " << i;
            } else {
                EXPECT_TRUE(CellShows(codes[i], int(i) * 8, y, kInk, kPaper)) << what << " " << i;
            }
        }
        EXPECT_EQ(0u, Pixel(int(codes.size()) * 8, y)) << what << ": no cell after the text";
    }
};

TEST_F(Utf8, EachCharacterTakesOneCell) {
    EXPECT_EQ(-1, setTextEncoding(2));
    EXPECT_EQ(-1, setTextEncoding(-1));
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
    int y = 0;
    for (const auto& c : cases) {
        WriteTextWithBackground(0, y, c.text, kInk, kPaper, c.font);
        y += 20;
    }
    Update();
    y = 0;
    for (const auto& c : cases) {
        ExpectCells(c.cells, y, c.text);
        y += 20;
    }
}

// The same letters give the same pixels, whichever way they were written; a text keeps
// the meaning it had when it was handed over.
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

    Clear();
    setTextEncoding(VANTOR_TEXT_BYTES);
    WriteTextWithBackground(0, 0, "\xc3\xbc", kInk, kPaper, 0);
    setTextEncoding(VANTOR_TEXT_UTF8);
    WriteTextWithBackground(0, 20, "\xc3\xbc", kInk, kPaper, 0);
    Update();
    ExpectCells({0xC3, 0xBC}, 0, "bytes");
    ExpectCells({0xFC}, 20, "UTF-8");
}
