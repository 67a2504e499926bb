// SPDX-License-Identifier: MIT
// RGB_to_RGBA: packed 3-byte RGB to the library's 4-byte pixels (blue, green, red, 0 in
// memory), a screenful at a time, so it has to run near memory speed.
#include <cstdint>
#include <cstring>

#include "../display/Packed24.h"
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

using Vantor::Packed24::kLittleEndian;

// Sixteen triples (48 bytes) at a time become sixteen words in byte shuffles, red and
// blue swapped on the way; what is left of the source, and everything on a big-endian
// CPU, goes pixel by pixel.
VANTOR_ROW_LOOP void Convert(const unsigned char* __restrict src, unsigned char* __restrict dst,
                             size_t pixels) {
    size_t i = 0;
    for (; kLittleEndian && i + kBlock <= pixels; i += kBlock)
        Vantor::Packed24::Spread<Vantor::Packed24::kSwapOrder>(src + i * 3, dst + i * 4);
    for (; i < pixels; ++i) ConvertPixel(src + i * 3, dst + i * 4);
}

}  // namespace

// Leftover bytes of an incomplete triple are not converted but still count in the
// result, which is 4/3 of the size for any size.
int RGB_to_RGBA(const unsigned char* src, unsigned char* dst, int size) {
    if (src == nullptr || dst == nullptr || size < 1) return -2;
    // Counts in size_t: 4 * i passes INT_MAX once size nears 1.6e9 bytes.
    Convert(src, dst, static_cast<size_t>(size) / 3);
    return static_cast<int>(4LL * size / 3);
}
