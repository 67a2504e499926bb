#ifndef VANTOR_MKFONT_CODELIST_H
#define VANTOR_MKFONT_CODELIST_H

#include <string>
#include <vector>

namespace VantorFont {

// The codes a user names on the command line, e.g. "32-126,160-255" or "0x41,233". The
// library draws the bytes 1 to 255 of a string, so nothing else is accepted.
class CodeList {
  public:
    static std::vector<int> Parse(const std::string& list);  // throws Refusal

  private:
    static int ParseCode(const std::string& text, const std::string& list);
};

}  // namespace VantorFont

#endif
