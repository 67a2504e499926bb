// SPDX-License-Identifier: MIT
// The block transfers of a screen: the one place where a turned picture is turned.
// Unturned blocks go row by row through the pixel layout's row conversions; turned
// ones are gathered into short runs that those same conversions write.
#include <algorithm>
#include <cstddef>

#include "vantor/Screen.h"

namespace Vantor {

namespace {

// A turned block moves in tiles of kTileRows panel rows by kTileColumns panel columns.
// At 90 and 270 degrees a panel row is a buffer column, so a tile reads kTileColumns
// buffer rows of kTileRows pixels: one cache line each, all used before the tile ends,
// instead of a new line for every pixel of a whole panel row. Each tile row is one run
// through the layout's row conversion.
const int kTileRows = 16;
const int kTileColumns = 64;

// Where the buffer pixel for panel pixel (column i, row j) of the block's panel
// rectangle lies: base + j * rowStep + i * columnStep, in pixels.
struct Path {
    ptrdiff_t base;
    ptrdiff_t rowStep;
    ptrdiff_t columnStep;
};

void Gather(const uint32_t* from, ptrdiff_t step, uint32_t* run, int count) {
    for (int k = 0; k < count; ++k) run[k] = from[k * step];
}

void Scatter(const uint32_t* run, uint32_t* to, ptrdiff_t step, int count) {
    for (int k = 0; k < count; ++k) to[k * step] = run[k];
}

}  // namespace

CScreen::Block CScreen::PanelBlock(int x, int y, int w, int h) const {
    const int panelWidth = getPanelWidth();
    const int panelHeight = getPanelHeight();
    switch (rotation) {
        case 90:
            return {panelWidth - y - h, x, h, w};
        case 180:
            return {panelWidth - x - w, panelHeight - y - h, w, h};
        case 270:
            return {y, panelHeight - x - w, h, w};
        default:
            return {x, y, w, h};
    }
}

// Calls move(offset in the buffer, step between its pixels, panel memory, count) once
// per run of panel pixels, in tile order when the picture is turned.
template <typename RowMove>
void CScreen::Walk(size_t pitch, int x, int y, int w, int h, RowMove move) const {
    const ptrdiff_t p = ptrdiff_t(pitch);
    const Block panel = PanelBlock(x, y, w, h);
    if (rotation == 0) {
        for (int r = 0; r < h; ++r) move(r * p, 1, At(x, y + r), w);
        return;
    }
    Path path;
    if (rotation == 90) {
        path = {(h - 1) * p, 1, -p};
    } else if (rotation == 180) {
        path = {(h - 1) * p + w - 1, -p, -1};
    } else {
        path = {w - 1, -1, p};
    }
    for (int j0 = 0; j0 < panel.height; j0 += kTileRows) {
        const int rowEnd = std::min(j0 + kTileRows, panel.height);
        for (int i0 = 0; i0 < panel.width; i0 += kTileColumns) {
            const int count = std::min(kTileColumns, panel.width - i0);
            for (int j = j0; j < rowEnd; ++j) {
                const ptrdiff_t at = path.base + j * path.rowStep + i0 * path.columnStep;
                move(at, path.columnStep, At(panel.x + i0, panel.y + j), count);
            }
        }
    }
}

void CScreen::EncodeBlock(const uint32_t* colours, size_t pitch, int x, int y, int w, int h) const {
    Walk(pitch, x, y, w, h, [&](ptrdiff_t at, ptrdiff_t step, uint8_t* device, int count) {
        if (step == 1) {
            format.EncodeRow(colours + at, device, size_t(count));
            return;
        }
        uint32_t run[kTileColumns];
        Gather(colours + at, step, run, count);
        format.EncodeRow(run, device, size_t(count));
    });
}

void CScreen::ReadBlock(uint32_t* raw, size_t pitch, int x, int y, int w, int h) const {
    Walk(pitch, x, y, w, h, [&](ptrdiff_t at, ptrdiff_t step, uint8_t* device, int count) {
        if (step == 1) {
            format.ReadRaw(device, raw + at, size_t(count));
            return;
        }
        uint32_t run[kTileColumns];
        format.ReadRaw(device, run, size_t(count));
        Scatter(run, raw + at, step, count);
    });
}

void CScreen::WriteBlock(const uint32_t* raw, size_t pitch, int x, int y, int w, int h) const {
    Walk(pitch, x, y, w, h, [&](ptrdiff_t at, ptrdiff_t step, uint8_t* device, int count) {
        if (step == 1) {
            format.WriteRaw(raw + at, device, size_t(count));
            return;
        }
        uint32_t run[kTileColumns];
        Gather(raw + at, step, run, count);
        format.WriteRaw(run, device, size_t(count));
    });
}

}  // namespace Vantor
