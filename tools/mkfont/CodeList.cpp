// SPDX-License-Identifier: MIT
#include "CodeList.h"

#include <cstdlib>

#include "Refusal.h"

namespace VantorFont {

namespace {

struct NamedRange {
    const char* name;
    int first, last;
};

// The blocks a product sold across Europe needs on its screens, and the pictures menus
// and tables are drawn with.
const NamedRange kRanges[] = {
    {"ascii", 0x20, 0x7E},           {"latin1", 0x20, 0xFF},     {"latin-ext-a", 0x100, 0x17F},
    {"greek", 0x370, 0x3FF},         {"cyrillic", 0x400, 0x4FF}, {"arrows", 0x2190, 0x21FF},
    {"box", 0x2500, 0x257F},         {"blocks", 0x2580, 0x259F}, {"shapes", 0x25A0, 0x25FF},
    {"replacement", 0xFFFD, 0xFFFD},
};

const NamedRange* RangeNamed(const std::string& name) {
    for (const NamedRange& range : kRanges) {
        if (name == range.name) return &range;
    }
    return nullptr;
}

}  // namespace

std::string CodeList::RangeNames() {
    std::string names;
    for (const NamedRange& range : kRanges)
        names += (names.empty() ? "" : ", ") + std::string(range.name);
    return names;
}

std::vector<int> CodeList::Parse(const std::string& list, int highest) {
    std::vector<int> codes;
    size_t start = 0;
    for (;;) {
        const size_t comma = list.find(',', start);
        const std::string part = list.substr(start, comma - start);
        const NamedRange* named = RangeNamed(part);
        const size_t dash = named != nullptr ? std::string::npos : part.find('-');
        const int first = named != nullptr ? named->first : ParseCode(part.substr(0, dash), list);
        const int last = named != nullptr            ? named->last
                         : dash == std::string::npos ? first
                                                     : ParseCode(part.substr(dash + 1), list);
        if (last > highest) {
            throw Refusal("bad code list \"" + list + "\": " + part +
                          " lies above 255: give --codepage Unicode");
        }
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
    if (text.empty() || *end != '\0' || value < 1 || value > 0x10FFFF) {
        throw Refusal("bad code list \"" + list + "\": codes are 1 to 255 (0x10FFFF with " +
                      "--codepage Unicode), e.g. 32-126,160-255, or ranges named " + RangeNames());
    }
    return int(value);
}

}  // namespace VantorFont
