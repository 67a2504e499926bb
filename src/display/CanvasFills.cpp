// The row-wise drawing of CCanvas: everything that writes more than one pixel into a
// canvas clips once here and then fills or expands whole rows, instead of asking
// setPoint about every pixel.
#include <algorithm>

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
    const uint32_t ink = foreground.value;
    const uint32_t paper = background.value;
    for (long long r = rows.first; r < rows.last; ++r) {
        const unsigned char* source = bitmap + static_cast<size_t>(r) * width + columns.first;
        uint32_t* target = pPixels + static_cast<size_t>(y + r) * canvasWidth +
                           static_cast<size_t>(x + columns.first);
        for (size_t c = 0; c < count; ++c) target[c] = source[c] != 0 ? ink : paper;
    }
    modified = true;
    return 0;
}

}  // namespace Vantor
