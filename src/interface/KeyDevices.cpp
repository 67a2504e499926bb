// SPDX-License-Identifier: MIT
// setKeyDevices: which input devices the next InitKeypad opens.
#include <string>
#include <vector>

#include "Boundary.h"
#include "KeySettings.h"
#include "vantor.h"

using Vantor::CKeySettings;

namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

// Blanks around an entry are dropped, and so are empty entries: "a, b," is a and b.
// False for too many or too long entries.
bool SplitList(const std::string& list, std::vector<std::string>& entries) {
    size_t start = 0;
    while (start <= list.size()) {
        size_t end = list.find(',', start);
        if (end == std::string::npos) end = list.size();
        size_t first = start, last = end;
        while (first < last && IsBlank(list[first])) ++first;
        while (last > first && IsBlank(list[last - 1])) --last;
        if (last - first > CKeySettings::kMaxEntryLength) return false;
        if (last > first) entries.push_back(list.substr(first, last - first));
        if (entries.size() > CKeySettings::kMaxEntries) return false;
        start = end + 1;
    }
    return true;
}

}  // namespace

int setKeyDevices(const char* devices) {
    return Vantor::Guarded("setKeyDevices", -1, [&] {
        std::vector<std::string> entries;
        if (devices != nullptr && *devices != '\0') {
            if (!SplitList(devices, entries) || entries.empty()) return -1;
        }
        CKeySettings::Devices().swap(entries);
        return 0;
    });
}
