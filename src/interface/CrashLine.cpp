// SPDX-License-Identifier: MIT
#include "CrashLine.h"

#include <unistd.h>

#include <cerrno>
#include <iostream>

namespace Vantor {

CrashLine::CrashLine(const char* text) : buffer(), length(0) {
    Append(text);
}

void CrashLine::Append(const char* text) {
    while (*text != '\0' && length < sizeof(buffer) - 1) buffer[length++] = *text++;
}

void CrashLine::AppendDigits(unsigned long value, unsigned base, bool upper) {
    const char* digits = upper ? "0123456789ABCDEF" : "0123456789abcdef";
    char reversed[24];
    size_t count = 0;
    do {
        reversed[count++] = digits[value % base];
        value /= base;
    } while (value != 0);
    while (count > 0 && length < sizeof(buffer) - 1) buffer[length++] = reversed[--count];
}

// Written as the error stream would write an int: octal and hexadecimal show the
// value's 32-bit pattern, the base prefix and '+' follow the stream's flags.
CrashLine& CrashLine::Number(long value) {
    const std::ios_base::fmtflags flags = std::cerr.flags();
    const std::ios_base::fmtflags base = flags & std::ios_base::basefield;
    const bool upper = (flags & std::ios_base::uppercase) != 0;
    const bool prefix = (flags & std::ios_base::showbase) != 0 && value != 0;
    if (base == std::ios_base::hex || base == std::ios_base::oct) {
        const bool hex = base == std::ios_base::hex;
        if (prefix) Append(hex ? (upper ? "0X" : "0x") : "0");
        AppendDigits(static_cast<unsigned int>(value), hex ? 16 : 8, upper);
        return *this;
    }
    if (value < 0) Append("-");
    if (value > 0 && (flags & std::ios_base::showpos) != 0) Append("+");
    AppendDigits(value < 0 ? 0UL - static_cast<unsigned long>(value) : value, 10, false);
    return *this;
}

// A pointer always reads 0x and lower-case digits, or a lone 0 when null.
CrashLine& CrashLine::Pointer(const void* address) {
    const unsigned long value = reinterpret_cast<unsigned long>(address);
    if (value != 0) Append("0x");
    AppendDigits(value, 16, false);
    return *this;
}

// Retries an interrupted or partial write; any other error of the terminal is
// ignored, as there is nobody left to tell.
void CrashLine::Write() {
    buffer[length++] = '\n';
    size_t written = 0;
    while (written < length) {
        const ssize_t result = ::write(2, buffer + written, length - written);
        if (result > 0) {
            written += static_cast<size_t>(result);
        } else if (result < 0 && errno == EINTR) {
            continue;
        } else {
            return;
        }
    }
}

}  // namespace Vantor
