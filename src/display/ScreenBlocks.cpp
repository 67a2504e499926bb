// SPDX-License-Identifier: MIT
// The block transfers of a screen: the one place where a turned picture is turned.
// Unturned blocks go row by row through the pixel layout's row conversions. Turned ones
// go tile by tile: a tile is turned into panel order in a small buffer, whose rows then
// take the same row conversions.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "vantor/Screen.h"

namespace Vantor {

namespace {

// A tile is kTileRows panel rows of kTileColumns pixels. At 90 and 270 degrees a panel
// row is a buffer column, so a tile covers kTileColumns buffer rows of kTileRows pixels:
// one cache line each, all used before the next tile, where a whole panel row at a time
// would fetch a new line for every pixel.
const int kTileRows = 16;
const int kTileColumns = 64;

// Where the buffer pixel for panel pixel (column i, row j) of the block's panel
// rectangle lies: base + j * rowStep + i * columnStep, in pixels. At 90 and 270 the row
// step is ±1 and the column step ± the buffer's pitch; at 180 the other way round.
struct Path {
    ptrdiff_t base;
    ptrdiff_t rowStep;
    ptrdiff_t columnStep;
};

typedef uint32_t Quad __attribute__((vector_size(16)));

Quad LoadQuad(const uint32_t* from) {
    Quad quad;
    std::memcpy(&quad, from, sizeof(quad));
    return quad;
}

void StoreQuad(uint32_t* to, Quad quad) {
    std::memcpy(to, &quad, sizeof(quad));
}

// Row r of `to` takes column r of a 4 x 4 block of `from`; either side's rows may run
// backwards (a negative stride), which turns the block by a quarter either way.
void Transpose4(const uint32_t* from, ptrdiff_t fromStride, uint32_t* to, ptrdiff_t toStride) {
    const Quad a0 = LoadQuad(from), a1 = LoadQuad(from + fromStride);
    const Quad a2 = LoadQuad(from + 2 * fromStride), a3 = LoadQuad(from + 3 * fromStride);
    const Quad t0 = __builtin_shufflevector(a0, a1, 0, 4, 1, 5);
    const Quad t1 = __builtin_shufflevector(a0, a1, 2, 6, 3, 7);
    const Quad t2 = __builtin_shufflevector(a2, a3, 0, 4, 1, 5);
    const Quad t3 = __builtin_shufflevector(a2, a3, 2, 6, 3, 7);
    StoreQuad(to, __builtin_shufflevector(t0, t2, 0, 1, 4, 5));
    StoreQuad(to + toStride, __builtin_shufflevector(t0, t2, 2, 3, 6, 7));
    StoreQuad(to + 2 * toStride, __builtin_shufflevector(t1, t3, 0, 1, 4, 5));
    StoreQuad(to + 3 * toStride, __builtin_shufflevector(t1, t3, 2, 3, 6, 7));
}

Quad Reverse(Quad quad) {
    return __builtin_shufflevector(quad, quad, 3, 2, 1, 0);
}

// Moves one tile between the buffer (from a pixel offset, along a path) and a tile of
// panel-ordered rows `tileStride` pixels apart: a small buffer, or the panel memory
// itself where the layout needs no conversion. Whole 4 x 4 blocks (quarter turns) and
// runs of 4 (half turns) move as vectors; what is left at the edges pixel by pixel.
class TileMover {
  public:
    TileMover(const Path& p, int r, int c, ptrdiff_t s)
        : path(p), rows(r), columns(c), tileStride(s) {}

    int Rows() const { return rows; }
    int Columns() const { return columns; }

    void Gather(const uint32_t* at, uint32_t* tile) const {
        Visit(
            [&](ptrdiff_t buffer, ptrdiff_t cells, ptrdiff_t cellStride) {
                Transpose4(at + buffer, path.columnStep, tile + cells, cellStride);
            },
            [&](ptrdiff_t buffer, ptrdiff_t cells) {
                StoreQuad(tile + cells, Reverse(LoadQuad(at + buffer)));
            },
            [&](ptrdiff_t buffer, ptrdiff_t cell) { tile[cell] = at[buffer]; });
    }

    void Scatter(const uint32_t* tile, uint32_t* at) const {
        Visit(
            [&](ptrdiff_t buffer, ptrdiff_t cells, ptrdiff_t cellStride) {
                Transpose4(tile + cells, cellStride, at + buffer, path.columnStep);
            },
            [&](ptrdiff_t buffer, ptrdiff_t cells) {
                StoreQuad(at + buffer, Reverse(LoadQuad(tile + cells)));
            },
            [&](ptrdiff_t buffer, ptrdiff_t cell) { at[buffer] = tile[cell]; });
    }

  private:
    // Calls block(buffer offset, tile offset, tile row stride) per 4 x 4 block of a
    // quarter turn, run(buffer offset, tile offset) per run of 4 of a half turn, and
    // pixel(buffer offset, tile offset) for every other pixel. The buffer side of a
    // block or run starts at its lowest address, so it runs forwards.
    template <typename Block4, typename Run4, typename Pixel>
    void Visit(Block4 block, Run4 run, Pixel pixel) const {
        const bool quarter = path.rowStep == 1 || path.rowStep == -1;
        const int blockRows = quarter ? rows & ~3 : rows;
        const int blockColumns = columns & ~3;
        const bool backwards = path.rowStep < 0;
        for (int j = 0; j < blockRows; j += quarter ? 4 : 1) {
            const int first = quarter && backwards ? j + 3 : j;
            const ptrdiff_t cellStride = quarter && backwards ? -tileStride : tileStride;
            for (int i = 0; i < blockColumns; i += 4) {
                if (quarter) {
                    block(first * path.rowStep + i * path.columnStep, first * tileStride + i,
                          cellStride);
                } else {
                    run(j * path.rowStep + (i + 3) * path.columnStep, j * tileStride + i);
                }
            }
        }
        for (int j = 0; j < rows; ++j) {
            for (int i = j < blockRows ? blockColumns : 0; i < columns; ++i) {
                pixel(j * path.rowStep + i * path.columnStep, j * tileStride + i);
            }
        }
    }

    Path path;
    int rows;
    int columns;
    ptrdiff_t tileStride;
};

// Panel memory that can serve as the tile itself: whole, aligned 32-bit pixels.
bool IsWordAligned(const uint8_t* memory, size_t stride) {
    return reinterpret_cast<uintptr_t>(memory) % 4 == 0 && stride % 4 == 0;
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

// Unturned, calls rows(offset in the buffer, panel memory, count) once per row. Turned,
// calls tiles(mover, offset in the buffer, panel memory of the tile's first pixel) once
// per tile; with `direct`, the mover's tile is the panel memory itself.
template <typename Rows, typename Tiles>
void CScreen::Walk(size_t pitch, int x, int y, int w, int h, bool direct, Rows rows,
                   Tiles tiles) const {
    const ptrdiff_t p = ptrdiff_t(pitch);
    if (rotation == 0) {
        for (int r = 0; r < h; ++r) rows(r * p, At(x, y + r), w);
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
    const ptrdiff_t tileStride = direct ? ptrdiff_t(stride / 4) : kTileColumns;
    const Block panel = PanelBlock(x, y, w, h);
    for (int j = 0; j < panel.height; j += kTileRows) {
        for (int i = 0; i < panel.width; i += kTileColumns) {
            const TileMover mover(path, std::min(kTileRows, panel.height - j),
                                  std::min(kTileColumns, panel.width - i), tileStride);
            tiles(mover, path.base + j * path.rowStep + i * path.columnStep,
                  At(panel.x + i, panel.y + j));
        }
    }
}

// The canvases' own layout needs no conversion, so a turned tile goes straight onto
// the panel; any other goes through a tile buffer and the layout's row conversion.
void CScreen::EncodeBlock(const uint32_t* colours, size_t pitch, int x, int y, int w, int h) const {
    uint32_t tile[kTileRows * kTileColumns];
    const bool direct = format.IsNative() && IsWordAligned(pStart, stride);
    Walk(
        pitch, x, y, w, h, direct,
        [&](ptrdiff_t at, uint8_t* device, int count) {
            format.EncodeRow(colours + at, device, size_t(count));
        },
        [&](const TileMover& mover, ptrdiff_t at, uint8_t* device) {
            if (direct) {
                mover.Gather(colours + at, reinterpret_cast<uint32_t*>(device));
                return;
            }
            mover.Gather(colours + at, tile);
            for (int j = 0; j < mover.Rows(); ++j) {
                format.EncodeRow(tile + j * kTileColumns, device + j * stride,
                                 size_t(mover.Columns()));
            }
        });
}

// Raw 32-bit pixels are the panel's own words, so those tiles also move directly.
void CScreen::ReadBlock(uint32_t* raw, size_t pitch, int x, int y, int w, int h) const {
    uint32_t tile[kTileRows * kTileColumns];
    const bool direct = format.getBytesPerPixel() == 4 && IsWordAligned(pStart, stride);
    Walk(
        pitch, x, y, w, h, direct,
        [&](ptrdiff_t at, uint8_t* device, int count) {
            format.ReadRaw(device, raw + at, size_t(count));
        },
        [&](const TileMover& mover, ptrdiff_t at, uint8_t* device) {
            if (direct) {
                mover.Scatter(reinterpret_cast<const uint32_t*>(device), raw + at);
                return;
            }
            for (int j = 0; j < mover.Rows(); ++j) {
                format.ReadRaw(device + j * stride, tile + j * kTileColumns,
                               size_t(mover.Columns()));
            }
            mover.Scatter(tile, raw + at);
        });
}

void CScreen::WriteBlock(const uint32_t* raw, size_t pitch, int x, int y, int w, int h) const {
    uint32_t tile[kTileRows * kTileColumns];
    const bool direct = format.getBytesPerPixel() == 4 && IsWordAligned(pStart, stride);
    Walk(
        pitch, x, y, w, h, direct,
        [&](ptrdiff_t at, uint8_t* device, int count) {
            format.WriteRaw(raw + at, device, size_t(count));
        },
        [&](const TileMover& mover, ptrdiff_t at, uint8_t* device) {
            if (direct) {
                mover.Gather(raw + at, reinterpret_cast<uint32_t*>(device));
                return;
            }
            mover.Gather(raw + at, tile);
            for (int j = 0; j < mover.Rows(); ++j) {
                format.WriteRaw(tile + j * kTileColumns, device + j * stride,
                                size_t(mover.Columns()));
            }
        });
}

}  // namespace Vantor
