// SPDX-License-Identifier: MIT
#ifndef VANTOR_MKFONT_CODEPAGE_H
#define VANTOR_MKFONT_CODEPAGE_H

#include <cstdint>
#include <string>
#include <vector>

namespace VantorFont {

// An 8-bit code page: which Unicode character each code 0..255 stands for. The page
// "Unicode" is no 8-bit page: every code, up to U+10FFFF, is that Unicode character, as
// the library's UTF-8 text looks characters up.
class CodePage {
  public:
    // Throws Refusal for a name it does not know.
    static CodePage Named(const std::string& name);
    static std::vector<std::string> Names();
    uint32_t ToUnicode(int code) const { return unicode ? uint32_t(code) : table[code & 0xFF]; }
    int HighestCode() const { return unicode ? 0x10FFFF : 255; }

  private:
    bool unicode = false;
    uint32_t table[256] = {};
};

}  // namespace VantorFont

#endif
