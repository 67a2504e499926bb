#include "CodeList.h"

#include <cstdlib>

#include "GlyphSet.h"

namespace VantorFont {

namespace {

int Code(const std::string& text, const std::string& list) {
    char* end = nullptr;
    const long value = std::strtol(text.c_str(), &end, 0);
    if (text.empty() || *end != '\0' || value < 1 || value > 255) {
        throw Refusal("bad code list \"" + list + "\": codes are 1 to 255, e.g. 32-126,160-255");
    }
    return int(value);
}

}  // namespace

std::vector<int> ParseCodes(const std::string& list) {
    std::vector<int> codes;
    size_t start = 0;
    while (start <= list.size()) {
        const size_t comma = list.find(',', start);
        const std::string part =
            list.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
        const size_t dash = part.find('-', 1);
        const int first = Code(part.substr(0, dash), list);
        const int last = dash == std::string::npos ? first : Code(part.substr(dash + 1), list);
        for (int code = first; code <= last; ++code) codes.push_back(code);
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    return codes;
}

}  // namespace VantorFont
