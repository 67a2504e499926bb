// SPDX-License-Identifier: MIT
// The row conversions work on blocks of pixels, with code chosen per layout and per CPU;
// they must give exactly the bytes of the plain pixel-by-pixel definition, on random
// rows of every length and at every byte offset, and write nothing past the row.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "vantor.h"
#include "vantor/PixelFormat.h"

using Vantor::CPixelFormat;

namespace {

// The definition the fast paths replaced: the canvas's own layout is copied as it is;
// any other keeps the top bits of each channel and stores the pixel's low bytes in the
// CPU's byte order (24-bit: lowest byte first).
uint32_t Pack(const CPixelFormat& f, uint32_t c) {
    if (f.IsNative()) return c;
    auto channel = [c](unsigned shift, const CPixelFormat::Channel& ch) {
        return ((c >> (shift + 8 - ch.length)) & ((1u << ch.length) - 1u)) << ch.offset;
    };
    return channel(16, f.red) | channel(8, f.green) | channel(0, f.blue);
}

void Store(int bytes, uint8_t* to, uint32_t value) {
    if (bytes == 3) {
        for (int b = 0; b < 3; ++b) to[b] = uint8_t(value >> (8 * b));
    } else if (bytes == 2) {
        const uint16_t narrow = uint16_t(value);
        std::memcpy(to, &narrow, 2);
    } else {
        std::memcpy(to, &value, 4);
    }
}

uint32_t Load(int bytes, const uint8_t* from) {
    uint32_t value = 0;
    if (bytes == 3) return from[0] | uint32_t(from[1]) << 8 | uint32_t(from[2]) << 16;
    if (bytes == 2) {
        uint16_t narrow;
        std::memcpy(&narrow, from, 2);
        return narrow;
    }
    std::memcpy(&value, from, 4);
    return value;
}

const size_t kLengths[] = {0, 1, 15, 16, 17, 31, 33, 47, 100, 799, 800};
const uint8_t kGuard = 0xA5;

}  // namespace

TEST(PixelIdentity, RowsMatchThePixelDefinitionInEveryLayout) {
    const CPixelFormat formats[] = {
        CPixelFormat(),                              // XRGB8888
        CPixelFormat(32, {0, 8}, {8, 8}, {16, 8}),   // XBGR8888
        CPixelFormat(32, {8, 8}, {16, 8}, {24, 8}),  // BGRX8888
        CPixelFormat(32, {24, 8}, {16, 8}, {8, 8}),  // RGBX8888
        CPixelFormat(32, {1, 7}, {9, 3}, {20, 8}),   // made up, odd shifts
        CPixelFormat(24, {16, 8}, {8, 8}, {0, 8}),   // RGB888
        CPixelFormat(24, {0, 8}, {8, 8}, {16, 8}),   // BGR888
        CPixelFormat(24, {18, 6}, {8, 8}, {2, 6}),   // made up
        CPixelFormat(16, {11, 5}, {5, 6}, {0, 5}),   // RGB565
        CPixelFormat(16, {0, 5}, {5, 6}, {11, 5}),   // BGR565
        CPixelFormat(16, {10, 5}, {5, 5}, {0, 5}),   // RGB555
    };
    std::mt19937 random(22);
    for (const CPixelFormat& format : formats) {
        const int bytes = format.getBytesPerPixel();
        for (size_t count : kLengths) {
            for (size_t offset = 0; offset < 4; ++offset) {
                std::vector<uint32_t> colours(count + 1), raw(count + 1), back(count + 1, 7);
                std::vector<uint8_t> device(count * bytes + 8, kGuard), expected(device);
                // Raw values are what ReadRaw gives: the device pixel's own bits.
                const uint32_t pixelBits = bytes == 4 ? ~0u : (1u << (8 * bytes)) - 1u;
                for (size_t i = 0; i < count; ++i)
                    colours[i] = random(), raw[i] = random() & pixelBits;
                for (size_t i = 0; i < count; ++i) {
                    Store(bytes, &expected[offset + i * bytes], Pack(format, colours[i]));
                }
                format.EncodeRow(colours.data(), device.data() + offset, count);
                EXPECT_EQ(expected, device) << bytes << " " << format.red.offset << " " << count;

                format.ReadRaw(device.data() + offset, back.data(), count);
                for (size_t i = 0; i < count; ++i) {
                    ASSERT_EQ(Load(bytes, &device[offset + i * bytes]), back[i])
                        << count << " " << i;
                }
                EXPECT_EQ(7u, back[count]);

                for (size_t i = 0; i < count; ++i)
                    Store(bytes, &expected[offset + i * bytes], raw[i]);
                format.WriteRaw(raw.data(), device.data() + offset, count);
                EXPECT_EQ(expected, device) << bytes << " " << format.red.offset << " " << count;
            }
        }
    }
}

// Every size, including leftovers of one or two bytes that are not converted.
TEST(PixelIdentity, RgbToRgbaMatchesTheByteDefinition) {
    std::mt19937 random(3);
    for (int size = 1; size < 400; size += size < 120 ? 1 : 37) {
        for (size_t offset = 0; offset < 4; ++offset) {
            std::vector<unsigned char> source(size + offset), target(size / 3 * 4 + 8, kGuard);
            for (unsigned char& byte : source) byte = static_cast<unsigned char>(random());
            std::vector<unsigned char> expected(target);
            const unsigned char* from = source.data() + offset;
            for (int i = 0; i < size / 3; ++i) {
                const unsigned char pixel[4] = {from[3 * i + 2], from[3 * i + 1], from[3 * i], 0};
                std::memcpy(&expected[4 * i], pixel, 4);
            }
            EXPECT_EQ(4 * size / 3, RGB_to_RGBA(from, target.data(), size)) << size;
            EXPECT_EQ(expected, target) << size << " " << offset;
        }
    }
}
