// SPDX-License-Identifier: MIT
#include "InputDirectory.h"

#include <dirent.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

namespace Vantor {

namespace InputDirectory {

namespace {

// N for a directory entry named exactly prefix followed by N, else -1. Nine digits at
// most, so N fits an int.
int NumberAfter(const char* prefix, const char* entryName) {
    const size_t length = std::strlen(prefix);
    if (std::strncmp(entryName, prefix, length) != 0) return -1;
    const char* digits = entryName + length;
    const size_t count = std::strlen(digits);
    if (count == 0 || count > 9) return -1;
    int number = 0;
    for (const char* d = digits; *d != '\0'; ++d) {
        if (*d < '0' || *d > '9') return -1;
        number = number * 10 + (*d - '0');
    }
    return number;
}

// Each N of the entries of dir named prefix + N, in the order the directory lists them.
std::vector<int> NumbersIn(const char* dirPath, const char* prefix, bool firstOnly) {
    std::vector<int> numbers;
    DIR* dir = opendir(dirPath);
    if (dir == nullptr) return numbers;
    while (const dirent* entry = readdir(dir)) {
        const int number = NumberAfter(prefix, entry->d_name);
        if (number < 0) continue;
        numbers.push_back(number);
        if (firstOnly) break;
    }
    closedir(dir);
    return numbers;
}

}  // namespace

bool NameStartsWith(int input, const char* prefix) {
    char namePath[64];
    std::snprintf(namePath, sizeof(namePath), "/sys/class/input/input%1d/name", input);
    std::ifstream file(namePath);
    if (!file.is_open()) return false;
    const std::string name((std::istreambuf_iterator<char>(file)),
                           std::istreambuf_iterator<char>());
    const size_t length = std::strlen(prefix);
    return name.size() >= length && std::strncmp(name.c_str(), prefix, length) == 0;
}

// M equals N only until some device comes and goes, so it is looked up rather than
// assumed.
std::string EventNodeOf(int input) {
    char dirPath[64];
    std::snprintf(dirPath, sizeof(dirPath), "/sys/class/input/input%1d", input);
    const std::vector<int> events = NumbersIn(dirPath, "event", true);
    char nodePath[64];
    std::snprintf(nodePath, sizeof(nodePath), "/dev/input/event%1d",
                  events.empty() ? input : events.front());
    return nodePath;
}

std::vector<int> Inputs() {
    std::vector<int> inputs = NumbersIn("/sys/class/input", "input", false);
    std::sort(inputs.begin(), inputs.end());
    return inputs;
}

}  // namespace InputDirectory

}  // namespace Vantor
