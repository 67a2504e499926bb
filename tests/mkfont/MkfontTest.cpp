// vantor-mkfont run as a user runs it: fonts written by the test go in, every glyph bit
// is compared; bad input gives a message and no file; the default fonts hold what the
// library's users will draw.
#include <gtest/gtest.h>
#include <png.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zlib.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "vantor/BitmapFont.h"

namespace {

// A 5x7 pattern per code that differs from code to code.
bool Bit(int code, int row, int column) {
    return ((code >> (row % 5)) ^ (column + row)) & 1;
}

struct ToolRun {
    int status;
    std::string output;
};

ToolRun RunMkfont(const std::string& arguments) {
    const std::string command = std::string(VANTOR_MKFONT) + " " + arguments + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    ToolRun run{-1, ""};
    char buffer[512];
    while (fgets(buffer, sizeof(buffer), pipe)) run.output += buffer;
    run.status = WEXITSTATUS(pclose(pipe));
    return run;
}

class Mkfont : public ::testing::Test {
  protected:
    void SetUp() override {
        char pattern[] = "/tmp/vantor-mkfont-test-XXXXXX";
        dir = mkdtemp(pattern);
    }
    void TearDown() override { std::system(("rm -rf " + dir).c_str()); }

    void ExpectGlyphs(const std::string& font, const std::vector<int>& codes) {
        Vantor::CBitmapFont loaded(font.c_str());
        ASSERT_EQ(5, loaded.header.glyphWidth);
        ASSERT_EQ(7, loaded.header.glyphHeight);
        ASSERT_EQ(int(codes.size()), loaded.header.glyphCount);
        for (int code : codes) {
            const unsigned char* bits = loaded.getGlyphFromCode(code);
            ASSERT_NE(nullptr, bits) << code;
            for (int r = 0; r < 7; ++r) {
                for (int c = 0; c < 5; ++c)
                    ASSERT_EQ(Bit(code, r, c), bits[r * 5 + c] != 0) << code;
            }
        }
    }

    std::string dir;
};

std::string Bdf(const std::vector<int>& codes) {
    std::string text =
        "STARTFONT 2.1\nFONT -test-fixed-medium-r-normal--7-70-75-75-c-50-iso10646-1\n"
        "SIZE 7 75 75\nFONTBOUNDINGBOX 5 7 0 -1\nSTARTPROPERTIES 2\n"
        "FONT_ASCENT 6\nFONT_DESCENT 1\nENDPROPERTIES\nCHARS " +
        std::to_string(codes.size()) + "\n";
    for (int code : codes) {
        text += "STARTCHAR c" + std::to_string(code) + "\nENCODING " + std::to_string(code) +
                "\nSWIDTH 500 0\nDWIDTH 5 0\nBBX 5 7 0 -1\nBITMAP\n";
        for (int r = 0; r < 7; ++r) {
            int row = 0;
            for (int c = 0; c < 5; ++c) row |= Bit(code, r, c) << (7 - c);
            char hex[16];
            std::snprintf(hex, sizeof(hex), "%02X\n", row);
            text += hex;
        }
        text += "ENDCHAR\n";
    }
    return text + "ENDFONT\n";
}

// A PSF2 font whose Unicode table maps glyph i to the character codes[i].
std::string Psf2(const std::vector<int>& codes) {
    std::string data;
    auto put = [&data](uint32_t v) {
        for (int s = 0; s < 32; s += 8) data += char(v >> s);
    };
    put(0x864AB572);
    put(0);
    put(32);
    put(1);
    put(uint32_t(codes.size()));
    put(7);
    put(7);
    put(5);
    for (int code : codes) {
        for (int r = 0; r < 7; ++r) {
            int row = 0;
            for (int c = 0; c < 5; ++c) row |= Bit(code, r, c) << (7 - c);
            data += char(row);
        }
    }
    for (int code : codes) {
        if (code < 0x80) {
            data += char(code);
        } else if (code < 0x800) {
            data += char(0xC0 | code >> 6);
            data += char(0x80 | (code & 0x3F));
        } else {
            data += char(0xE0 | code >> 12);
            data += char(0x80 | (code >> 6 & 0x3F));
            data += char(0x80 | (code & 0x3F));
        }
        data += char(0xFF);
    }
    return data;
}

}  // namespace

TEST_F(Mkfont, BdfFontsConvertBitForBit) {
    std::ofstream(dir + "/small.bdf") << Bdf({65, 66, 0xE9});
    const ToolRun run = RunMkfont(dir + "/small.bdf -o " + dir + "/small.tf");
    ASSERT_EQ(0, run.status) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("3 glyphs of 5x7 pixels"));
    ExpectGlyphs(dir + "/small.tf", {65, 66, 0xE9});
}

TEST_F(Mkfont, Psf2FontsConvertThroughTheirUnicodeTableAndCodePage) {
    const std::string psf = Psf2({65, 0x20AC, 0xE9});
    std::ofstream(dir + "/small.psfu", std::ios::binary) << psf;
    gzFile gz = gzopen((dir + "/small.psfu.gz").c_str(), "wb");
    gzwrite(gz, psf.data(), unsigned(psf.size()));
    gzclose(gz);

    ToolRun run = RunMkfont(dir + "/small.psfu.gz --codes 65,164,233 -o " + dir + "/latin1.tf");
    ASSERT_EQ(0, run.status) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("1 codes left out"));  // no currency sign
    run = RunMkfont(dir + "/small.psfu --codepage ISO-8859-15 --codes 65,164 -o " + dir +
                    "/latin9.tf");
    ASSERT_EQ(0, run.status) << run.output;
    Vantor::CBitmapFont latin9((dir + "/latin9.tf").c_str());
    const unsigned char* euro = latin9.getGlyphFromCode(164);  // 0xA4 is the euro sign in Latin-9
    ASSERT_NE(nullptr, euro);
    for (int r = 0; r < 7; ++r) {
        for (int c = 0; c < 5; ++c) EXPECT_EQ(Bit(0x20AC, r, c), euro[r * 5 + c] != 0);
    }
}

TEST_F(Mkfont, BadInputGivesAMessageAndNoFile) {
    const std::string out = dir + "/out.tf";
    const std::pair<std::string, std::string> cases[] = {
        {dir + "/missing.bdf -o " + out, "cannot read font file"},
        {dir + "/small.bdf --codepage KOI9 -o " + out, "unknown code page"},
        {dir + "/small.bdf --codes 0-300 -o " + out, "bad code list"},
        {dir + "/small.bdf --bogus -o " + out, "unknown option"},
        {dir + "/small.bdf", "-o OUTPUT.tf"},
    };
    std::ofstream(dir + "/small.bdf") << Bdf({65});
    for (const auto& [arguments, message] : cases) {
        const ToolRun run = RunMkfont(arguments);
        EXPECT_NE(0, run.status) << arguments;
        EXPECT_NE(std::string::npos, run.output.find(message)) << run.output;
    }
    std::ofstream(dir + "/wide.bdf") << [] {
        std::string text = Bdf({65});  // a glyph drawn wider than the font's cell
        return text.replace(text.find("BBX 5 7 0 -1"), 12, "BBX 5 7 3 -1");
    }();
    const ToolRun wide = RunMkfont(dir + "/wide.bdf -o " + out);
    EXPECT_NE(0, wide.status);
    EXPECT_NE(std::string::npos, wide.output.find("wider than")) << wide.output;
    EXPECT_NE(0, access(out.c_str(), F_OK));
    EXPECT_EQ(0, std::system(("test -z \"$(ls -A " + dir + " | grep mkfont)\"").c_str()));
}

TEST(DefaultFonts, RegularAndBoldHoldLatin1InEightBySixteenCells) {
    for (const char* name : {"lr.tf", "lb.tf"}) {
        Vantor::CBitmapFont font((std::string(VANTOR_FONT_DIR) + "/" + name).c_str());
        EXPECT_EQ(8, font.header.glyphWidth);
        EXPECT_EQ(16, font.header.glyphHeight);
        for (int code : {int('A'), int('g'), 0xE9}) {
            const unsigned char* bits = font.getGlyphFromCode(code);
            ASSERT_NE(nullptr, bits) << name << " " << code;
            int inked = 0;
            for (int i = 0; i < 8 * 16; ++i) inked += bits[i] != 0;
            EXPECT_GT(inked, 8) << name << " " << code;
        }
    }
}

TEST_F(Mkfont, SheetIsAPngOfSixteenBySixteenCells) {
    const std::string sheet = dir + "/sheet.png";
    const ToolRun run =
        RunMkfont("--sheet " + std::string(VANTOR_FONT_DIR) + "/lr.tf " + sheet + " --scale 1");
    ASSERT_EQ(0, run.status) << run.output;
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    ASSERT_TRUE(png_image_begin_read_from_file(&image, sheet.c_str()));
    image.format = PNG_FORMAT_GRAY;
    std::vector<uint8_t> pixels(PNG_IMAGE_SIZE(image));
    ASSERT_TRUE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr));
    EXPECT_EQ(16u * 9 + 1, image.width);
    EXPECT_EQ(16u * 17 + 1, image.height);
    EXPECT_EQ(160, pixels[0]);                // grid
    EXPECT_EQ(224, pixels[image.width + 1]);  // code 0 is not in the font
    Vantor::CBitmapFont font((std::string(VANTOR_FONT_DIR) + "/lr.tf").c_str());
    const unsigned char* a = font.getGlyphFromCode('A');
    const int x0 = 1 + 1 * 9, y0 = 1 + 4 * 17;  // 'A' is 0x41: row 4, column 1
    for (int r = 0; r < 16; ++r) {
        for (int c = 0; c < 8; ++c) {
            ASSERT_EQ(a[r * 8 + c] ? 0 : 255, pixels[(y0 + r) * image.width + x0 + c]);
        }
    }
}
