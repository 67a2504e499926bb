// SPDX-License-Identifier: MIT
#ifndef VANTOR_TESTS_INTERFACEFIXTURE_H
#define VANTOR_TESTS_INTERFACEFIXTURE_H

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "vantor.h"
#include "vantor/KeypadMatrix.h"

// The keypad keys the tests press, by name.
using namespace Vantor::KeypadMatrix;

// Every C-interface test starts from a freshly loaded library state, a virtual 320x240
// framebuffer at /dev/fb0 and the two fonts (8x16 cells) at their installed paths.
class Interface : public ::testing::Test {
  protected:
    static const int kWidth = 320;
    static const int kHeight = 240;

    void SetUp() override;
    void TearDown() override;

    uint32_t Pixel(int x, int y) const;
    void FillScreen(uint32_t colour);
    std::vector<uint32_t> Snapshot() const;
    // True when the 8x16 cell at (x, y) on the screen shows glyph `code` in these colours.
    bool CellShows(int code, int x, int y, uint32_t ink, uint32_t paper) const;

    void AddKeypad(int index = 0, const char* name = "tca8418 keypad");
    void Script(const char* codes, int index = 0);  // device codes, each pressed and released
    void Script(const std::vector<int>& codes, int index = 0);
    void Press(int code, int index = 0, int value = 1);

    // What `call` writes on standard output, then what it writes on the error stream.
    std::string OutputOf(const std::function<void()>& call);
};

#endif
