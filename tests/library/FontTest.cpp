// SPDX-License-Identifier: MIT
// Loading font files: what is accepted, what is refused and with which message.
#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>

#include "TestSupport.h"
#include "vantor/BitmapFont.h"

using namespace Vantor;
using namespace VantorTest;

namespace {

class FontFile : public ::testing::Test {
  protected:
    std::string path = MakeTempDir() + "/font.tf";

    static std::string LoadError(const char* name) {
        try {
            CBitmapFont font(name);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "loaded";
    }
};

}  // namespace

// What lies between the magic and the header, and after the last glyph, is not looked
// at; a code is found at its first entry, never as a negative or a code above 255 cut
// to a byte. A reload that fails keeps the font there was.
TEST_F(FontFile, GlyphsAreTheFilesBytesFoundByTheirCode) {
    std::vector<unsigned char> bytes = FontBytes(3, 2, {66, -5, 66, 256 + 67});
    bytes[9] = 'x';
    bytes.push_back(42);
    WriteFile(path, bytes);
    CBitmapFont font(path.c_str());
    EXPECT_EQ(0, std::memcmp(bytes.data() + bytes.size() - 7, font.getGlyphFromIndex(3), 6));
    EXPECT_EQ(nullptr, font.getGlyphFromIndex(4));
    EXPECT_EQ(nullptr, font.getGlyphFromIndex(-1));
    const std::pair<int, int> lookups[] = {{66, 0}, {-5, -1}, {67, -1}, {256 + 67, 3}};
    for (const auto& [code, index] : lookups) EXPECT_EQ(index, font.getIndexFromCode(code)) << code;
    EXPECT_THROW(font.ReadFont("/nonexistent/font.tf"), std::runtime_error);
    EXPECT_EQ(3, font.getIndexFromCode(256 + 67));
    EXPECT_STREQ(path.c_str(), font.pFileName);
}

// Damaged, short or boastful files are refused with the message of the part that could
// not be read, before a table of a claimed size is made.
TEST_F(FontFile, DamagedFilesNameWhatCouldNotBeRead) {
    const struct {
        size_t size;  // the file cut or padded with zeros to this many bytes
        int32_t count, height, width;
        const char* message;
    } cases[] = {
        {44, 0, 2, 3, "Cannot read font"},
        {44, -4, 2, 3, "Cannot read font"},
        {44, 2, 0, 3, "Cannot read font"},
        {44, 2, 2, 0, "Cannot read font"},
        {23, 2, 2, 3, "Cannot read font"},
        {88, 16, 1 << 30, 1 << 30, "Cannot read font"},
        {88, 0x10000, 0x1000, 0x1000, "Cannot read font"},
        {100000, 1, 5000, 1, "Cannot read font"},
        {30, 2, 2, 3, "Unable to read glyph codes"},
        {24, 0x7fffffff, 1, 1, "Unable to read glyph codes"},
        {43, 2, 2, 3, "Unable to read glyphs"},
        {29, 1, 0x1000, 0x1000, "Unable to read glyphs"},
    };
    for (const auto& c : cases) {
        std::vector<unsigned char> bytes = FontBytes(3, 2, {65, 66});
        const int32_t header[] = {c.count, c.height, c.width};
        std::memcpy(bytes.data() + 12, header, sizeof(header));
        bytes.resize(c.size);
        WriteFile(path, bytes);
        EXPECT_EQ(c.message, LoadError(path.c_str())) << c.size << " " << c.count;
    }
    std::vector<unsigned char> bytes = FontBytes(3, 2, {65});
    bytes[8] = '!';
    WriteFile(path, bytes);
    EXPECT_EQ("Cannot read font", LoadError(path.c_str()));
    EXPECT_EQ("Undefined font file name", LoadError(""));
    EXPECT_THROW(CBitmapFont(nullptr), std::runtime_error);
}
