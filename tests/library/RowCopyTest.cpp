// SPDX-License-Identifier: MIT
// Whole-row moves between canvas buffers and screen memory: rows copied in one go or in
// pieces (decided by where the two ends lie) and canvas fills by block must give exactly
// the pixels a pixel-by-pixel copy or fill gives, and touch nothing past the row.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "vantor/Canvas.h"
#include "vantor/PixelFormat.h"

using Vantor::CCanvas;
using Vantor::CPixelFormat;

// Every distance from source to destination within the first cache lines of a page
// (where rows go in pieces), and lengths around the piece size.
TEST(RowCopy, NativeRowsArriveWholeAtEveryDistanceAndLength) {
    const CPixelFormat native;
    std::vector<uint8_t> memory(10 * 4096);
    uint8_t* page = memory.data() + (4096 - reinterpret_cast<uintptr_t>(memory.data()) % 4096);
    const uint32_t* from = reinterpret_cast<const uint32_t*>(page);
    std::vector<uint32_t> source(2100);
    for (size_t i = 0; i < source.size(); ++i) source[i] = uint32_t(i * 2654435761u);
    for (size_t distance = 0; distance <= 68; distance += 4) {
        for (size_t count : {1u, 127u, 128u, 129u, 255u, 800u, 2100u}) {
            std::memcpy(page, source.data(), count * 4);
            uint8_t* to = page + 4 * 4096 + distance;  // distance modulo 4 KiB
            std::memset(to, 0xEE, count * 4 + 8);
            native.EncodeRow(from, to, count);
            EXPECT_EQ(0, std::memcmp(to, source.data(), count * 4)) << distance << " " << count;
            EXPECT_EQ(0xEE, to[count * 4]) << distance << " " << count;
            std::memset(to, 0xEE, count * 4);
            native.ReadRaw(page, reinterpret_cast<uint32_t*>(to), count);  // no alignment needed
            EXPECT_EQ(0, std::memcmp(to, source.data(), count * 4)) << distance << " " << count;
        }
    }
}

// Fills by memset or by a copied block, for sizes around the block, in black and in a
// colour whose bytes differ; buffers start on a cache line.
TEST(RowCopy, RefreshFillsEveryPixelWithTheBackground) {
    for (int width : {1, 31, 33, 800}) {
        for (int height : {1, 31, 33}) {
            for (uint32_t colour : {0u, 0x123456u, 0x010101u}) {
                CCanvas canvas(0, 0, width, height);
                canvas.background = colour;
                canvas.Refresh();
                const size_t count = size_t(width) * height;
                size_t wrong = 0;
                for (size_t i = 0; i < count; ++i) wrong += canvas.pPixels[i] != colour;
                EXPECT_EQ(0u, wrong) << width << "x" << height << " " << colour;
                EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(canvas.pPixels) % 64);
                EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(canvas.pBackground) % 64);
            }
        }
    }
}
