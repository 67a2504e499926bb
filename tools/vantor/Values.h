// SPDX-License-Identifier: MIT
// Option values as scripts write them; each parser names the option and what it
// expected when the text does not fit, so a script author sees the fault at once.
#ifndef VANTOR_TOOL_VALUES_H
#define VANTOR_TOOL_VALUES_H

#include <cstdint>
#include <string>

namespace VantorTool {

struct Box {
    int x = 0, y = 0, width = 0, height = 0;
};

uint32_t ParseColour(const std::string& option, const std::string& text);  // RRGGBB or #RRGGBB
Box ParsePoint(const std::string& option, const std::string& text);        // X,Y (no size)
Box ParseBox(const std::string& option, const std::string& text);          // X,Y,W,H
float ParseNumber(const std::string& option, const std::string& text, float least, float most);
int ParseAlign(const std::string& option, const std::string& text);  // an eAlignMode
// A plain decimal number ("42", "-1.5", "7."): no hex, exponent, inf or nan, which
// strtof would also take and a script never means.
bool ReadDecimal(const std::string& text, float& value);
int ParseRotation(const std::string& option, const std::string& text);  // 0, 90, 180 or 270
int ChosenRotation();  // VANTOR_ROTATION, or 0 when it is unset or empty

}  // namespace VantorTool

#endif
