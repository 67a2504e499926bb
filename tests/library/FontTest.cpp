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

    std::string LoadError(const std::vector<unsigned char>& bytes) {
        WriteFile(path, bytes);
        try {
            CBitmapFont font(path.c_str());
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "loaded";
    }
};

void SetInt(std::vector<unsigned char>& bytes, size_t offset, int32_t value) {
    std::memcpy(bytes.data() + offset, &value, 4);
}

}  // namespace

TEST_F(FontFile, ExactFileLoadsAndLastGlyphIsTheLastBytes) {
    std::vector<unsigned char> bytes = FontBytes(3, 2, {65, 66, 67});
    bytes[9] = 'x';  // the three bytes after the magic are not looked at
    ASSERT_EQ("loaded", LoadError(bytes));
    CBitmapFont font(path.c_str());
    EXPECT_STREQ(path.c_str(), font.pFileName);
    EXPECT_EQ(3, font.header.glyphCount);
    EXPECT_EQ(2, font.header.glyphHeight);
    EXPECT_EQ(3, font.header.glyphWidth);
    EXPECT_EQ(0, std::memcmp(bytes.data() + bytes.size() - 6, font.getGlyphFromIndex(2), 6));
    EXPECT_EQ(nullptr, font.getGlyphFromIndex(3));
    EXPECT_EQ(nullptr, font.getGlyphFromIndex(-1));
    EXPECT_EQ(font.getGlyphFromIndex(0), font.getGlyphFromCode(65));
}

TEST_F(FontFile, DamagedHeadersAreRefused) {
    std::vector<unsigned char> bytes = FontBytes(3, 2, {65});
    bytes[8] = '!';
    EXPECT_EQ("Cannot read font", LoadError(bytes));
    for (size_t field : {12u, 16u, 20u}) {
        for (int32_t value : {0, -4}) {
            std::vector<unsigned char> damaged = FontBytes(3, 2, {65});
            SetInt(damaged, field, value);
            EXPECT_EQ("Cannot read font", LoadError(damaged)) << field << " " << value;
        }
    }
    // Headers that claim more than any display or the file could hold: refused with the
    // message their short read would give, before a table of the claimed size is made.
    struct Claim {
        int32_t count, height, width;
        size_t fileSize;
        const char* message;
    } claims[] = {
        {16, 1 << 30, 1 << 30, 88, "Cannot read font"},
        {0x10000, 0x1000, 0x1000, 88, "Cannot read font"},
        {1, 5000, 1, 100000, "Cannot read font"},
        {0x7fffffff, 1, 1, 24, "Unable to read glyph codes"},
        {0x0b800000, 1, 1, 29, "Unable to read glyph codes"},
        {1, 0x1000, 0x1000, 29, "Unable to read glyphs"},
    };
    for (const Claim& c : claims) {
        std::vector<unsigned char> claim = FontBytes(3, 2, {65});
        claim.resize(c.fileSize);
        SetInt(claim, 12, c.count);
        SetInt(claim, 16, c.height);
        SetInt(claim, 20, c.width);
        EXPECT_EQ(c.message, LoadError(claim)) << c.count << " " << c.height << " " << c.width;
    }
    EXPECT_EQ("Cannot read font",
              LoadError(std::vector<unsigned char>(bytes.begin(), bytes.begin() + 23)));
}

TEST_F(FontFile, TruncatedTablesAndMissingFilesNameTheirFailure) {
    std::vector<unsigned char> bytes = FontBytes(3, 2, {65, 66});
    EXPECT_EQ("Unable to read glyph codes", LoadError({bytes.begin(), bytes.begin() + 30}));
    EXPECT_EQ("Unable to read glyphs", LoadError({bytes.begin(), bytes.end() - 1}));
    bytes.push_back(42);
    EXPECT_EQ("loaded", LoadError(bytes));
    EXPECT_THROW(CBitmapFont(nullptr), std::runtime_error);
    try {
        CBitmapFont font("");
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ("Undefined font file name", error.what());
    }
    try {
        CBitmapFont font("/nonexistent/font.tf");
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ("Cannot open font file", error.what());
    }
}

TEST_F(FontFile, LookupsFindTheFirstOfDuplicatesAndNeverNegativeCodes) {
    WriteFont(path, 2, 2, {66, -5, 66, 256 + 67});
    CBitmapFont font(path.c_str());
    EXPECT_EQ(0, font.getIndexFromCode(66));
    EXPECT_EQ(-1, font.getIndexFromCode(-5));
    EXPECT_EQ(nullptr, font.getGlyphFromCode(-5));
    EXPECT_EQ(-1, font.getIndexFromCode(67));  // 323 is not 67 in disguise
    EXPECT_EQ(3, font.getIndexFromCode(256 + 67));

    WriteFont(path, 2, 2, {67});  // a reload answers for the new table only
    font.ReadFont(path.c_str());
    EXPECT_EQ(-1, font.getIndexFromCode(66));
    EXPECT_EQ(0, font.getIndexFromCode(67));

    CBitmapFont empty;
    EXPECT_EQ(-1, empty.getIndexFromCode(66));
    EXPECT_EQ(nullptr, empty.getGlyphFromIndex(0));
}

TEST_F(FontFile, FailedReloadKeepsThePreviousFont) {
    WriteFont(path, 2, 2, {70});
    CBitmapFont font(path.c_str());
    EXPECT_THROW(font.ReadFont("/nonexistent/font.tf"), std::runtime_error);
    EXPECT_EQ(0, font.getIndexFromCode(70));
    EXPECT_STREQ(path.c_str(), font.pFileName);
}
