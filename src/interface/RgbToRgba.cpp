// SPDX-License-Identifier: MIT
// RGB_to_RGBA: packed 3-byte RGB to the library's 4-byte pixels (blue, green, red, 0 in
// memory), a screenful at a time, so it has to run near memory speed.
#include <cstdint>
#include <cstring>

#include "../display/RowLoop.h"
#include "vantor.h"

namespace {

const size_t kBlock = 16;

void ConvertPixel(const unsigned char* src, unsigned char* dst) {
    dst[0] = src[2];
    dst[1] = src[1];
    dst[2] = src[0];
    dst[3] = 0;
}

const bool kLittleEndian = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;

// Each pixel is read as one 4-byte word starting at its first byte (the fourth byte
// belongs to the next pixel and is dropped), so a block is sixteen plain loads and
// shifts that the compiler vectorises; a block whose last word would reach past the
// source's `size` bytes is left to the pixel loop, as is everything on a big-endian
// CPU, where the words would hold the bytes the other way round.
VANTOR_ROW_LOOP void Convert(const unsigned char* __restrict src, unsigned char* __restrict dst,
                             size_t pixels, size_t size) {
    size_t i = 0;
    for (; kLittleEndian && (i + kBlock) * 3 + 1 <= size; i += kBlock) {
        uint32_t out[kBlock];
        for (size_t k = 0; k < kBlock; ++k) {
            uint32_t word;
            std::memcpy(&word, src + (i + k) * 3, 4);
            out[k] = (word & 0xFFu) << 16 | (word & 0xFF00u) | (word >> 16 & 0xFFu);
        }
        std::memcpy(dst + i * 4, out, sizeof out);
    }
    for (; i < pixels; ++i) ConvertPixel(src + i * 3, dst + i * 4);
}

}  // namespace

// Leftover bytes of an incomplete triple are not converted but still count in the
// result, which is 4/3 of the size for any size.
int RGB_to_RGBA(const unsigned char* src, unsigned char* dst, int size) {
    if (src == nullptr || dst == nullptr || size < 1) return -2;
    // Counts in size_t: 4 * i passes INT_MAX once size nears 1.6e9 bytes.
    Convert(src, dst, static_cast<size_t>(size) / 3, static_cast<size_t>(size));
    return static_cast<int>(4LL * size / 3);
}
