// The file the library reads, byte by byte; the default fonts it ships with; and the two
// ways a user looks into a font file.
#include <png.h>

#include <cstring>
#include <fstream>
#include <iterator>

#include "FontFixtures.h"
#include "vantor/BitmapFont.h"

namespace MkfontTest {
namespace {

const std::string kRegular = std::string(VANTOR_FONT_DIR) + "/lr.tf";
const std::string kBold = std::string(VANTOR_FONT_DIR) + "/lb.tf";

int32_t Le32(const std::vector<uint8_t>& data, size_t at) {
    return int32_t(data[at] | data[at + 1] << 8 | data[at + 2] << 16 |
                   uint32_t(data[at + 3]) << 24);
}

// The default cell: 8x16 unless the build picked another Terminus size.
int CellWidth() {
    const int widths[][2] = {{12, 6},  {14, 8},  {16, 8},  {18, 10}, {20, 10},
                             {22, 11}, {24, 12}, {28, 14}, {32, 16}};
    for (const auto& size : widths) {
        if (size[0] == VANTOR_FONT_SIZE) return size[1];
    }
    return 0;
}

int Ink(const unsigned char* bits, int size) {
    int ink = 0;
    for (int i = 0; i < size; ++i) ink += bits[i] != 0;
    return ink;
}

TEST_F(Mkfont, FileLayoutIsHeaderCodesThenBitmaps) {
    Write("small.bdf", Bdf({0xE9, 66, 65}));
    ASSERT_EQ(0, Tool(Path("small.bdf") + " -o " + Path("small.tf")).status);
    std::ifstream in(Path("small.tf"), std::ios::binary);
    const std::vector<uint8_t> data{std::istreambuf_iterator<char>(in), {}};
    ASSERT_EQ(24u + 3 * 4 + 3 * 7 * 5, data.size());
    EXPECT_EQ(0, std::memcmp(data.data(), "tinyfont\0\0\0\0", 12));
    EXPECT_EQ(3, Le32(data, 12));
    EXPECT_EQ(7, Le32(data, 16));  // height before width
    EXPECT_EQ(5, Le32(data, 20));
    EXPECT_EQ(65, Le32(data, 24));
    EXPECT_EQ(66, Le32(data, 28));
    EXPECT_EQ(0xE9, Le32(data, 32));
    for (size_t i = 36; i < data.size(); ++i) ASSERT_LE(data[i], 1) << i;
    EXPECT_EQ(Bit(66, 0, 0), data[36 + 35] != 0);  // the second bitmap is B's
}

TEST(DefaultFonts, RegularAndBoldHoldLatin1InTheConfiguredCell) {
    Vantor::CBitmapFont regular(kRegular.c_str()), bold(kBold.c_str());
    const int cell = CellWidth() * VANTOR_FONT_SIZE;
    for (const Vantor::CBitmapFont* font : {&regular, &bold}) {
        EXPECT_EQ(CellWidth(), font->header.glyphWidth);
        EXPECT_EQ(VANTOR_FONT_SIZE, font->header.glyphHeight);
        for (int code : {int('A'), int('g'), 0xE9}) {
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

TEST_F(Mkfont, ShowPrintsTheHeaderAndGlyphsAsTextArt) {
    const ToolRun run = Tool("--show " + kRegular + " 65,128");
    ASSERT_EQ(0, run.status) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("magic \"tinyfont\"")) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("code 128 (0x80): not in the font"));
    Vantor::CBitmapFont font(kRegular.c_str());
    const int w = font.header.glyphWidth;
    std::string art;
    for (int i = 0; i < w * font.header.glyphHeight; ++i) {
        art += font.getGlyphFromCode('A')[i] ? '#' : '.';
        if (i % w == w - 1) art += '\n';
    }
    const std::string cell = std::to_string(w) + "x" + std::to_string(font.header.glyphHeight);
    EXPECT_NE(std::string::npos, run.output.find("cell " + cell + " pixels")) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("code 65 (0x41) 'A'\n" + art)) << run.output;
}

TEST_F(Mkfont, SheetIsAPngOfSixteenBySixteenCells) {
    const ToolRun run = Tool("--sheet " + kRegular + " " + Path("sheet.png") + " --scale 1");
    ASSERT_EQ(0, run.status) << run.output;
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    ASSERT_TRUE(png_image_begin_read_from_file(&image, Path("sheet.png").c_str()));
    image.format = PNG_FORMAT_GRAY;
    std::vector<uint8_t> pixels(PNG_IMAGE_SIZE(image));
    ASSERT_TRUE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr));
    Vantor::CBitmapFont font(kRegular.c_str());
    const int w = font.header.glyphWidth, h = font.header.glyphHeight;
    EXPECT_EQ(16u * (w + 1) + 1, image.width);  // one grid line between cells and around
    EXPECT_EQ(16u * (h + 1) + 1, image.height);
    EXPECT_EQ(160, pixels[0]);                // grid
    EXPECT_EQ(224, pixels[image.width + 1]);  // code 0 is not in the font
    const unsigned char* a = font.getGlyphFromCode('A');
    const int x0 = 1 + 1 * (w + 1), y0 = 1 + 4 * (h + 1);  // 'A' is 0x41: row 4, column 1
    for (int r = 0; r < h; ++r) {
        for (int c = 0; c < w; ++c) {
            ASSERT_EQ(a[r * w + c] ? 0 : 255, pixels[(y0 + r) * image.width + x0 + c]);
        }
    }
}

}  // namespace
}  // namespace MkfontTest
