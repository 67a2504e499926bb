// SPDX-License-Identifier: MIT
// The row-wise drawing of CCanvas: everything that writes more than one pixel into a
// canvas clips once here and then fills or expands whole rows, instead of asking
// setPoint about every pixel.
#include <algorithm>

#include "RowLoop.h"
#include "vantor/Canvas.h"

namespace Vantor {

namespace {

// The part of [start, end) that lies in [0, limit).
struct Span {
    Span(long long start, long long end, int limit)
        : first(std::max(start, 0LL)), last(std::min(end, static_cast<long long>(limit))) {}
    bool empty() const { return first >= last; }
    long long first;
    long long last;
};

// Expands `rows` byte-map rows of `count` pixels each. With the count fixed at compile
// time (Count > 0) the compiler turns a row into a few vector operations; it needs to
// know that the byte map and the pixels do not overlap (they never do), and a select
// written as a mask.
template <size_t Count>
void ExpandRows(uint32_t* __restrict target, size_t targetStride,
                const unsigned char* __restrict source, size_t sourceStride, size_t rows,
                size_t count, uint32_t ink, uint32_t paper) {
    if (Count > 0) count = Count;
    const uint32_t inkBits = ink ^ paper;
    for (size_t r = 0; r < rows; ++r, target += targetStride, source += sourceStride) {
        for (size_t c = 0; c < count; ++c) {
            const uint32_t set = 0u - static_cast<uint32_t>(source[c] != 0);  // all ones or 0
            target[c] = paper ^ (inkBits & set);
        }
    }
}

// The 8-pixel cells of the usual fonts fill a text screen, so their rows get the wider
// vectors of the running CPU: one row becomes one widening load and one 32-byte store.
VANTOR_ROW_LOOP void ExpandEightPixelRows(uint32_t* __restrict target, size_t targetStride,
                                          const unsigned char* __restrict source,
                                          size_t sourceStride, size_t rows, uint32_t ink,
                                          uint32_t paper) {
    ExpandRows<8>(target, targetStride, source, sourceStride, rows, 8, ink, paper);
}

}  // namespace

int CCanvas::setArea(long long left, long long top, long long right, long long bottom,
                     const CRGBA24& colour) {
    const Span columns(left, right, getWidth());
    const Span rows(top, bottom, getHeight());
    if (pPixels == nullptr || columns.empty() || rows.empty()) return -2;
    const size_t width = static_cast<size_t>(getWidth());
    const size_t count = static_cast<size_t>(columns.last - columns.first);
    for (long long y = rows.first; y < rows.last; ++y) {
        std::fill_n(pPixels + static_cast<size_t>(y) * width + columns.first, count, colour.value);
    }
    modified = true;
    return 0;
}

int CCanvas::setBitmap(long long x, long long y, const unsigned char* bitmap, int width, int height,
                       const CRGBA24& foreground, const CRGBA24& background) {
    // Spans in bitmap coordinates: the columns and rows that land on the canvas.
    const Span columns(-x, getWidth() - x, width);
    const Span rows(-y, getHeight() - y, height);
    if (pPixels == nullptr || bitmap == nullptr || columns.empty() || rows.empty()) return -2;
    const size_t canvasWidth = static_cast<size_t>(getWidth());
    const size_t count = static_cast<size_t>(columns.last - columns.first);
    const size_t rowCount = static_cast<size_t>(rows.last - rows.first);
    const unsigned char* source =
        bitmap + static_cast<size_t>(rows.first) * width + static_cast<size_t>(columns.first);
    uint32_t* target = pPixels + static_cast<size_t>(y + rows.first) * canvasWidth +
                       static_cast<size_t>(x + columns.first);
    // Whole rows of the 8-pixel cells of the usual fonts are the common case.
    if (count == 8) {
        ExpandEightPixelRows(target, canvasWidth, source, width, rowCount, foreground.value,
                             background.value);
    } else {
        ExpandRows<0>(target, canvasWidth, source, width, rowCount, count, foreground.value,
                      background.value);
    }
    modified = true;
    return 0;
}

}  // namespace Vantor
