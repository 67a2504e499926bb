#ifndef VANTOR_TESTS_TESTSUPPORT_H
#define VANTOR_TESTS_TESTSUPPORT_H

#include <deque>
#include <string>
#include <vector>

#include "vantor/Keypad.h"

namespace VantorTest {

// A deterministic glyph pattern, so a test can tell which glyph landed in a cell.
bool GlyphBit(int code, int row, int column);

// Writes a font file with the given cell size holding one glyph per code.
std::string WriteFont(const std::string& path, int width, int height,
                      const std::vector<int>& codes);

// Raw bytes of a font file, for tests that damage one on purpose.
std::vector<unsigned char> FontBytes(int width, int height, const std::vector<int>& codes);

std::string MakeTempDir();
void WriteFile(const std::string& path, const std::vector<unsigned char>& bytes);
std::string ReadFile(const std::string& path);
int OpenDescriptors();  // of this process, to see that nothing leaked

// A key source that plays back a script. Running out of keys throws instead of
// waiting forever, so a widget that does not end fails the test rather than hangs.
class ScriptedKeypad : public Vantor::CKeypad {
  public:
    explicit ScriptedKeypad(std::deque<int> keys = {}) : script(std::move(keys)) {}
    int WaitKeyEvent(float timeout) override;

    std::deque<int> script;
};

}  // namespace VantorTest

#endif
