#include "CodeList.h"

#include <cstdlib>

#include "Refusal.h"

namespace VantorFont {

std::vector<int> CodeList::Parse(const std::string& list) {
    std::vector<int> codes;
    size_t start = 0;
    for (;;) {
        const size_t comma = list.find(',', start);
        const std::string part = list.substr(start, comma - start);
        const size_t dash = part.find('-');
        const int first = ParseCode(part.substr(0, dash), list);
        const int last = dash == std::string::npos ? first : ParseCode(part.substr(dash + 1), list);
        // A reversed range would silently select nothing.
        if (last < first)
            throw Refusal("bad code list \"" + list + "\": range " + part + " is reversed");
        for (int code = first; code <= last; ++code) codes.push_back(code);
        if (comma == std::string::npos) return codes;
        start = comma + 1;
    }
}

int CodeList::ParseCode(const std::string& text, const std::string& list) {
    char* end = nullptr;
    const long value = std::strtol(text.c_str(), &end, 0);  // base 0: 0xE9 works too
    if (text.empty() || *end != '\0' || value < 1 || value > 255) {
        throw Refusal("bad code list \"" + list + "\": codes are 1 to 255, e.g. 32-126,160-255");
    }
    return int(value);
}

}  // namespace VantorFont
