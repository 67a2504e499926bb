// SPDX-License-Identifier: MIT
// Row conversions work on blocks of pixels with code chosen per layout and per CPU, row
// copies go whole or in pieces depending on where their ends lie, canvases fill by
// block: all must give exactly the bytes of the plain pixel-by-pixel definition, and
// write nothing past the row.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "vantor.h"
#include "vantor/Canvas.h"
#include "vantor/PixelFormat.h"

using Vantor::CPixelFormat;

namespace {

// The definition: the canvas's own layout is copied as it is; any other keeps the top
// bits of each channel. A pixel is stored in the CPU's byte order, 24-bit lowest first.
uint32_t Pack(const CPixelFormat& f, uint32_t c) {
    if (f.IsNative()) return c;
    auto channel = [c](unsigned shift, const CPixelFormat::Channel& ch) {
        return ((c >> (shift + 8 - ch.length)) & ((1u << ch.length) - 1u)) << ch.offset;
    };
    return channel(16, f.red) | channel(8, f.green) | channel(0, f.blue);
}

void Store(int bytes, uint8_t* to, uint32_t value) {
    const uint16_t narrow = uint16_t(value);
    if (bytes == 3) {
        for (int b = 0; b < 3; ++b) to[b] = uint8_t(value >> (8 * b));
    } else {
        std::memcpy(to, bytes == 2 ? static_cast<const void*>(&narrow) : &value, size_t(bytes));
    }
}

}  // namespace

TEST(PixelIdentity, RowsMatchThePixelDefinitionInEveryLayout) {
    const CPixelFormat formats[] = {
        CPixelFormat(),                              // XRGB8888
        CPixelFormat(32, {0, 8}, {8, 8}, {16, 8}),   // XBGR8888
        CPixelFormat(32, {8, 8}, {16, 8}, {24, 8}),  // BGRX8888
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
        const uint32_t pixelBits = bytes == 4 ? ~0u : (1u << (8 * bytes)) - 1u;
        for (size_t count : {0, 1, 15, 16, 17, 31, 32, 33, 47, 63, 65, 100, 799, 800}) {
            for (size_t offset = 0; offset < 4; ++offset) {
                // Raw values are what ReadRaw gives: the device pixel's own bits.
                std::vector<uint32_t> colours(count), raw(count), back(count + 1, 7);
                std::vector<uint8_t> device(count * bytes + 8, 0xA5), expected(device);
                for (size_t i = 0; i < count; ++i)
                    colours[i] = random(), raw[i] = random() & pixelBits;
                for (size_t i = 0; i < count; ++i) {
                    Store(bytes, &expected[offset + i * bytes], Pack(format, colours[i]));
                }
                format.EncodeRow(colours.data(), device.data() + offset, count);
                EXPECT_EQ(expected, device) << bytes << " " << format.red.offset << " " << count;

                for (size_t i = 0; i < count; ++i)
                    Store(bytes, &expected[offset + i * bytes], raw[i]);
                format.WriteRaw(raw.data(), device.data() + offset, count);
                EXPECT_EQ(expected, device) << bytes << " " << format.red.offset << " " << count;
                format.ReadRaw(device.data() + offset, back.data(), count);
                EXPECT_EQ(7u, back.back());  // nothing past the row
                back.pop_back();
                EXPECT_EQ(raw, back) << bytes << " " << format.red.offset << " " << count;
            }
        }
    }
}

// Every size, including leftovers of one or two bytes that are not converted.
TEST(PixelIdentity, RgbToRgbaMatchesTheByteDefinition) {
    std::mt19937 random(3);
    for (int size = 1; size < 400; size += size < 120 ? 1 : 37) {
        for (size_t offset = 0; offset < 4; ++offset) {
            std::vector<unsigned char> source(size + offset), target(size / 3 * 4 + 8, 0xA5);
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

// Every distance from source to destination in the first cache lines of a page (rows
// there go in pieces), and lengths around the piece size.
TEST(PixelIdentity, NativeRowsArriveWholeAtEveryDistanceAndLength) {
    const Vantor::CPixelFormat native;
    std::vector<uint8_t> memory(10 * 4096);
    uint8_t* page = memory.data() + (4096 - reinterpret_cast<uintptr_t>(memory.data()) % 4096);
    std::vector<uint32_t> source(2100);
    for (size_t i = 0; i < source.size(); ++i) source[i] = uint32_t(i * 2654435761u);
    std::memcpy(page, source.data(), source.size() * 4);
    for (size_t distance = 0; distance <= 68; distance += 4) {
        for (size_t count : {1, 127, 128, 129, 800, 2100}) {
            uint8_t* to = page + 4 * 4096 + distance;
            std::memset(to, 0xEE, count * 4 + 4);
            native.EncodeRow(reinterpret_cast<const uint32_t*>(page), to, count);
            EXPECT_EQ(0, std::memcmp(to, source.data(), count * 4)) << distance << " " << count;
            EXPECT_EQ(0xEE, to[count * 4]) << distance << " " << count;
        }
    }
}

// Fills by memset or by a copied block, around the block's size, in black and in colours
// whose bytes differ; both buffers start on a cache line.
TEST(PixelIdentity, RefreshFillsEveryPixelWithTheBackground) {
    for (int width : {1, 1023, 1025, 26400}) {
        for (uint32_t colour : {0u, 0x123456u, 0x010101u}) {
            Vantor::CCanvas canvas(0, 0, width, 1);
            canvas.background = colour;
            canvas.Refresh();
            const std::vector<uint32_t> pixels(canvas.pPixels, canvas.pPixels + width);
            EXPECT_EQ(std::vector<uint32_t>(pixels.size(), colour), pixels) << width;
            EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(canvas.pPixels) % 64);
            EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(canvas.pBackground) % 64);
        }
    }
}

// Glyph rows expand with vectors chosen per CPU, 8-pixel cells on a path of their own:
// a non-zero byte gives ink, a zero paper, and nothing outside the clipped map changes.
TEST(PixelIdentity, BitmapsExpandToInkAndPaperByteByByte) {
    std::mt19937 random(7);
    const int cases[][4] = {{8, 16, 3, 2}, {8, 16, -3, 0},   {8, 16, 37, -5}, {8, 1, 0, 0},
                            {5, 7, 1, 1},  {16, 32, 30, 20}, {9, 16, -4, 9}};  // w, h, x, y
    for (const auto& c : cases) {
        std::vector<unsigned char> map(size_t(c[0] * c[1]));
        for (unsigned char& byte : map) byte = random() % 3 == 0 ? 0 : uint8_t(random());
        Vantor::CCanvas canvas(0, 0, 40, 24);
        canvas.background = 0xABCDEF;
        canvas.Refresh();
        canvas.setBitmap(c[2], c[3], map.data(), c[0], c[1], 0x123456, 0x00FF01);
        for (int y = 0, mx, my; y < 24; ++y) {
            for (int x = 0; x < 40; ++x) {
                mx = x - c[2], my = y - c[3];
                const bool inside = mx >= 0 && mx < c[0] && my >= 0 && my < c[1];
                const uint32_t ink = map[inside ? size_t(my * c[0] + mx) : 0] ? 0x123456 : 0x00FF01;
                ASSERT_EQ(inside ? ink : 0xABCDEFu, canvas.pPixels[y * 40 + x]) << c[0] << " " << x;
            }
        }
    }
}
