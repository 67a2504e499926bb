// SPDX-License-Identifier: MIT
#include "InputLines.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace VantorTool {

InputLines::InputLines(int descriptor, size_t limit) : fd(descriptor), longest(limit) {}

bool InputLines::Fill() {
    start = end = 0;
    if (ended) return false;
    ssize_t got;
    do got = read(fd, buffer, sizeof(buffer));
    while (got < 0 && errno == EINTR);
    ended = got <= 0;
    end = got > 0 ? size_t(got) : 0;
    return !ended;
}

bool InputLines::Next(std::string& line) {
    line.clear();
    bool any = false;
    for (;;) {
        if (start == end && !Fill()) return any;
        any = true;
        const char* from = buffer + start;
        const void* newline = std::memchr(from, '\n', end - start);
        const size_t length =
            newline ? size_t(static_cast<const char*>(newline) - from) : end - start;
        if (line.size() < longest) line.append(from, std::min(length, longest - line.size()));
        start += length;
        if (newline) {
            ++start;
            return true;
        }
    }
}

}  // namespace VantorTool
