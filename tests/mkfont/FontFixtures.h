#ifndef VANTOR_TESTS_MKFONT_FONTFIXTURES_H
#define VANTOR_TESTS_MKFONT_FONTFIXTURES_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TestSupport.h"

// Small fonts written by the tests in a fresh directory, and vantor-mkfont run on them
// as a user runs it.
namespace MkfontTest {

// The test pattern: a different 5x7 picture for every character.
bool Bit(int character, int row, int column);

std::string Bdf(const std::vector<int>& characters);
// A PSF2 font; with a table glyph i is character characters[i], without one only its index.
std::string Psf2(const std::vector<int>& characters, bool table = true);
// A PSF1 font of 256 8x8 glyphs without a table; glyph i is Bit(i) in its top left 5x7.
std::string Psf1();

struct ToolRun {
    int status;
    std::string output;  // stdout and stderr together
};

class Mkfont : public ::testing::Test {
  protected:
    ToolRun Tool(const std::string& arguments) const;
    std::string Write(const std::string& name, const std::string& bytes) const;
    void WriteGzip(const std::string& name, const std::string& bytes) const;
    std::string Path(const std::string& name) const { return dir + "/" + name; }
    std::vector<std::string> Files() const;
    // Every bit of `characters`' glyphs, stored under `codes`, in a 5x7 font file.
    void ExpectPattern(const std::string& font, const std::vector<int>& codes,
                       const std::vector<int>& characters, int columnOffset = 0) const;

    std::string dir = VantorTest::MakeTempDir();
};

}  // namespace MkfontTest

#endif
