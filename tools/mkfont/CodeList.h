// SPDX-License-Identifier: MIT
#ifndef VANTOR_MKFONT_CODELIST_H
#define VANTOR_MKFONT_CODELIST_H

#include <string>
#include <vector>

namespace VantorFont {

// The codes a user names on the command line, e.g. "32-126,160-255", "0x41,233" or, for
// Unicode fonts, named ranges such as "latin1,greek,cyrillic,0xFFFD". Codes run from 1 to
// the code page's highest code (255 for an 8-bit page).
class CodeList {
  public:
    static std::vector<int> Parse(const std::string& list, int highest = 255);  // throws Refusal
    static std::string RangeNames();

  private:
    static int ParseCode(const std::string& text, const std::string& list);
};

}  // namespace VantorFont

#endif
