// SPDX-License-Identifier: MIT
#ifndef VANTOR_TESTS_MKFONT_FONTFIXTURES_H
#define VANTOR_TESTS_MKFONT_FONTFIXTURES_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ShellRun.h"
#include "TestSupport.h"

// Small fonts written by the tests in a fresh directory, and vantor-mkfont run on them
// as a user runs it.
namespace MkfontTest {

// Each character's glyph is a different 5x7 picture.
std::string Bdf(const std::vector<int>& characters);
// A PSF2 font; with a table glyph i is character characters[i], without one only its index.
std::string Psf2(const std::vector<int>& characters, bool table = true);
// A PSF1 font of 256 8x8 glyphs without a table; glyph i is character i's picture.
std::string Psf1();

class Mkfont : public ::testing::Test {
  protected:
    static ShellRun Tool(const std::string& arguments) {
        return Shell(VANTOR_MKFONT " " + arguments);
    }
    std::string Path(const std::string& name) const { return dir + "/" + name; }
    void Write(const std::string& name, const std::string& bytes) const;
    // Every bit of `characters`' pictures, stored under `codes`, in a font file.
    void ExpectPattern(const std::string& font, const std::vector<int>& codes,
                       const std::vector<int>& characters, int columnOffset = 0) const;

    std::string dir = VantorTest::MakeTempDir();
};

}  // namespace MkfontTest

#endif
