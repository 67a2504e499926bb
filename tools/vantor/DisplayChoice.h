// SPDX-License-Identifier: MIT
#ifndef VANTOR_TOOL_DISPLAYCHOICE_H
#define VANTOR_TOOL_DISPLAYCHOICE_H

#include <string>
#include <vector>

namespace VantorTool {

// The displays to try, in order: the one given (--device), else $VANTOR_DEVICE, else
// /dev/fb0 when it exists, else every /dev/dri/cardN by number; the first that opens
// is used. Never empty: with nothing found it is /dev/fb0, which the error then names.
std::vector<std::string> DisplayCandidates(const std::string& given);

}  // namespace VantorTool

#endif
