// SPDX-License-Identifier: MIT
#ifndef VANTOR_TESTS_TESTSUPPORT_H
#define VANTOR_TESTS_TESTSUPPORT_H

#include <string>
#include <vector>

namespace VantorTest {

// A deterministic glyph pattern, so a test can tell which glyph landed in a cell.
bool GlyphBit(int code, int row, int column);

// Raw bytes of a font file, for tests that damage one on purpose.
std::vector<unsigned char> FontBytes(int width, int height, const std::vector<int>& codes);

std::string MakeTempDir();
void WriteFile(const std::string& path, const std::vector<unsigned char>& bytes);
std::string ReadFile(const std::string& path);
int OpenDescriptors();  // of this process, to see that nothing leaked

}  // namespace VantorTest

#endif
