#include "FuzzInput.h"

#include <climits>
#include <cmath>
#include <cstring>
#include <limits>

uint8_t FuzzInput::Byte() {
    if (size == 0) return 0;
    --size;
    return *data++;
}

uint32_t FuzzInput::Word() {
    uint32_t value = 0;
    for (int i = 0; i < 4; ++i) value = value << 8 | Byte();
    return value;
}

int FuzzInput::Int() {
    static const int kEdges[] = {INT_MIN, INT_MIN + 1, -65536, -1,          0,      1,   2,
                                 7,       8,           16,     100,         319,    320, 479,
                                 480,     4096,        65536,  INT_MAX - 1, INT_MAX};
    const uint8_t choice = Byte();
    if (choice < 128) return int(choice) - 32;
    if (choice < 240) return kEdges[choice % (sizeof(kEdges) / sizeof(kEdges[0]))];
    return static_cast<int>(Word());
}

float FuzzInput::Float() {
    const float kEdges[] = {std::numeric_limits<float>::quiet_NaN(),
                            std::numeric_limits<float>::infinity(),
                            -std::numeric_limits<float>::infinity(),
                            1e30f,
                            -1e30f,
                            -1.0f,
                            0.0f,
                            100.0f,
                            100.5f,
                            2147483648.0f};
    const uint8_t choice = Byte();
    if (choice < 160) return float(choice) - 30.0f;
    if (choice < 250) return kEdges[choice % (sizeof(kEdges) / sizeof(kEdges[0]))];
    const uint32_t bits = Word();
    float value;
    std::memcpy(&value, &bits, sizeof(value));
    return value;
}

// Mostly short texts of the input's own bytes; sometimes a very long run of one byte,
// as a host that passes a whole file as one line would.
std::string FuzzInput::Text(size_t longest) {
    const uint8_t length = Byte();
    if (length == 255) return std::string(longest, char(Byte() | 1));
    std::string text;
    for (uint8_t i = 0; i < length % 48 && size > 0; ++i) {
        const char c = char(Byte());
        if (c != '\0') text.push_back(c);
    }
    return text;
}
