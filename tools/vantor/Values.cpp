// SPDX-License-Identifier: MIT
#include "Values.h"

#include <vantor.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "CommandLine.h"

namespace VantorTool {

namespace {

[[noreturn]] void Refuse(const std::string& option, const std::string& text, const char* want) {
    throw UsageError("bad " + option + " \"" + text + "\": " + want);
}

// strtol with the separators checked by hand: "10,20junk" and overflowing numbers are
// refused, and the bound keeps coordinates far from int overflow in our sums.
bool ReadInts(const std::string& text, int* values, int count) {
    const char* at = text.c_str();
    for (int i = 0; i < count; ++i) {
        if (i > 0 && *at++ != ',') return false;
        char* end = nullptr;
        errno = 0;
        const long value = std::strtol(at, &end, 10);
        if (end == at || errno != 0 || std::labs(value) > 100000) return false;
        values[i] = int(value);
        at = end;
    }
    return *at == '\0';
}

}  // namespace

uint32_t ParseColour(const std::string& option, const std::string& text) {
    const std::string digits = !text.empty() && text[0] == '#' ? text.substr(1) : text;
    char* end = nullptr;
    const unsigned long value = std::strtoul(digits.c_str(), &end, 16);
    if (digits.size() != 6 || *end != '\0' || digits[0] == '-' || digits[0] == '+')
        Refuse(option, text, "give six hex digits RRGGBB, e.g. FFB000");
    return uint32_t(value);
}

Box ParsePoint(const std::string& option, const std::string& text) {
    int v[2];
    if (!ReadInts(text, v, 2) || v[0] < 0 || v[1] < 0)
        Refuse(option, text, "give X,Y in pixels, e.g. 10,20");
    Box box;
    box.x = v[0];
    box.y = v[1];
    return box;
}

Box ParseBox(const std::string& option, const std::string& text) {
    int v[4];
    if (!ReadInts(text, v, 4) || v[0] < 0 || v[1] < 0 || v[2] < 1 || v[3] < 1)
        Refuse(option, text, "give X,Y,W,H in pixels with W and H above 0, e.g. 40,60,400,200");
    return Box{v[0], v[1], v[2], v[3]};
}

bool ReadDecimal(const std::string& text, float& value) {
    const size_t sign = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
    const size_t digits = text.find_first_not_of("0123456789", sign);
    const size_t whole = (digits == std::string::npos ? text.size() : digits) - sign;
    size_t fraction = 0;
    if (digits != std::string::npos) {
        if (text[digits] != '.') return false;
        const size_t after = text.find_first_not_of("0123456789", digits + 1);
        if (after != std::string::npos) return false;
        fraction = text.size() - digits - 1;
    }
    if (whole + fraction == 0) return false;
    errno = 0;
    const float read = std::strtof(text.c_str(), nullptr);
    if (errno != 0 || !std::isfinite(read)) return false;
    value = read;
    return true;
}

float ParseNumber(const std::string& option, const std::string& text, float least, float most) {
    float value = 0;
    if (!ReadDecimal(text, value) || value < least || value > most) {
        char want[64];
        std::snprintf(want, sizeof(want), "give a number from %g to %g", least, most);
        Refuse(option, text, want);
    }
    return value;
}

int ParseAlign(const std::string& option, const std::string& text) {
    if (text == "left") return eAlignLeft;
    if (text == "center" || text == "centre") return eAlignCenter;
    if (text == "right") return eAlignRight;
    Refuse(option, text, "give left, center or right");
}

int ParseRotation(const std::string& option, const std::string& text) {
    for (int degrees : {0, 90, 180, 270}) {
        if (text == std::to_string(degrees)) return degrees;
    }
    Refuse(option, text, "give 0, 90, 180 or 270 (degrees clockwise)");
}

int ChosenRotation() {
    const char* chosen = std::getenv("VANTOR_ROTATION");
    if (chosen == nullptr || *chosen == '\0') return 0;
    return ParseRotation("VANTOR_ROTATION", chosen);
}

}  // namespace VantorTool
