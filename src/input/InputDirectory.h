// SPDX-License-Identifier: MIT
#ifndef VANTOR_INPUTDIRECTORY_H
#define VANTOR_INPUTDIRECTORY_H

#include <string>
#include <vector>

namespace Vantor {

// What the kernel publishes about its input devices under /sys/class/input.
namespace InputDirectory {

// True when inputN's name begins with prefix. The kernel ends the name with a newline,
// which a prefix never reaches; a name shorter than the prefix does not match.
bool NameStartsWith(int input, const char* prefix);

// The event node of inputN: /dev/input/eventM from inputN's own eventM entry, or
// /dev/input/eventN when it has none.
std::string EventNodeOf(int input);

// Every N with an inputN entry, in increasing order.
std::vector<int> Inputs();

}  // namespace InputDirectory

}  // namespace Vantor

#endif
