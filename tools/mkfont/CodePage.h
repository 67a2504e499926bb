#ifndef VANTOR_MKFONT_CODEPAGE_H
#define VANTOR_MKFONT_CODEPAGE_H

#include <cstdint>
#include <string>
#include <vector>

namespace VantorFont {

// An 8-bit code page: which Unicode character each code 0..255 stands for.
class CodePage {
  public:
    // Throws Refusal for a name it does not know.
    static CodePage Named(const std::string& name);
    static std::vector<std::string> Names();
    uint32_t ToUnicode(int code) const { return table[code & 0xFF]; }

  private:
    uint32_t table[256] = {};
};

}  // namespace VantorFont

#endif
