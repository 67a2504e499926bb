#ifndef VANTOR_MKFONT_CODELIST_H
#define VANTOR_MKFONT_CODELIST_H

#include <string>
#include <vector>

namespace VantorFont {

// "32-126,160-255" into the codes it names, each within 1 to 255; throws Refusal.
std::vector<int> ParseCodes(const std::string& list);

}  // namespace VantorFont

#endif
