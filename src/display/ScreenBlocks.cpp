// SPDX-License-Identifier: MIT
// The block transfers of a screen: the one place where a turned picture is turned.
// Unturned blocks go row by row through the pixel layout's row conversions. Turned ones
// go tile by tile: a tile is turned into panel order in a small buffer, whose rows then
// take the same row conversions; where no conversion is needed the tile is the panel
// memory itself, and XBGR8888 is packed inside the turn. 16-bit panels, and other 32-bit
// ones that need a conversion, turn the other way round: rows are converted first and
// the converted cells turned (see TurnCells).
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "Packed24.h"
#include "vantor/Screen.h"

namespace Vantor {

namespace {

// A tile is kTileRows panel rows of kTileColumns pixels. At 90 and 270 degrees a panel
// row is a buffer column, so a tile covers kTileColumns buffer rows of kTileRows pixels:
// whole cache lines, all used before the next tile, where a whole panel row at a time
// would fetch a new line for every pixel. The rows are long enough that each row
// conversion call carries plenty of pixels.
const int kTileRows = 16;
const int kTileColumns = 128;

// Where the buffer pixel for panel pixel (column i, row j) of the block's panel
// rectangle lies: base + j * rowStep + i * columnStep, in pixels. At 90 and 270 the row
// step is ±1 and the column step ± the buffer's pitch; at 180 the other way round.
struct Path {
    ptrdiff_t base;
    ptrdiff_t rowStep;
    ptrdiff_t columnStep;
};

typedef uint32_t Quad __attribute__((vector_size(16)));

// Four pixels of a buffer or tile. Vectors are passed by reference: by value they would
// take an ABI that 32-bit x86 without SSE lacks.
void LoadQuad(const uint32_t* from, Quad& quad) {
    std::memcpy(&quad, from, sizeof(quad));
}

void StoreQuad(uint32_t* to, const Quad& quad) {
    std::memcpy(to, &quad, sizeof(quad));
}

// Pixels that move unchanged: the canvases' own layout, and raw pixels.
struct Unchanged {
    template <typename Pixels>
    void operator()(Pixels&) const {}
};

// XBGR8888 from canvas colours, for one pixel or a quad: red and blue swapped and the
// top byte cleared, bit for bit what the layout's row conversion writes. Packing inside
// the turn saves a second pass over every pixel. The pixels are changed in place: a
// vector taken or given by value would need an ABI that 32-bit x86 without SSE lacks.
struct SwapRedBlue {
    template <typename Pixels>
    void operator()(Pixels& c) const {
        c = ((c << 16 | c >> 16) & 0x00FF00FFu) | (c & 0x0000FF00u);
    }
};

// Quad r takes lane r of every quad: a 4 x 4 block turned about its diagonal, in
// registers.
__attribute__((always_inline)) inline void TurnQuads(Quad& q0, Quad& q1, Quad& q2, Quad& q3) {
    const Quad t0 = __builtin_shufflevector(q0, q1, 0, 4, 1, 5);
    const Quad t1 = __builtin_shufflevector(q0, q1, 2, 6, 3, 7);
    const Quad t2 = __builtin_shufflevector(q2, q3, 0, 4, 1, 5);
    const Quad t3 = __builtin_shufflevector(q2, q3, 2, 6, 3, 7);
    q0 = __builtin_shufflevector(t0, t2, 0, 1, 4, 5);
    q1 = __builtin_shufflevector(t0, t2, 2, 3, 6, 7);
    q2 = __builtin_shufflevector(t1, t3, 0, 1, 4, 5);
    q3 = __builtin_shufflevector(t1, t3, 2, 3, 6, 7);
}

// Row r of `to` takes column r of a 4 x 4 block of `from`, each quad changed by `pack`
// on its way; either side's rows may run backwards (a negative stride), which turns the
// block by a quarter either way. Always inlined: a call per block would cost as much as
// the block.
template <typename From, typename To, typename Pack = Unchanged>
__attribute__((always_inline)) inline void Transpose4(const From* from, ptrdiff_t fromStride,
                                                      To* to, ptrdiff_t toStride,
                                                      const Pack& pack = Pack()) {
    Quad b0, b1, b2, b3;
    LoadQuad(from, b0);
    LoadQuad(from + fromStride, b1);
    LoadQuad(from + 2 * fromStride, b2);
    LoadQuad(from + 3 * fromStride, b3);
    TurnQuads(b0, b1, b2, b3);
    pack(b0);
    pack(b1);
    pack(b2);
    pack(b3);
    StoreQuad(to, b0);
    StoreQuad(to + toStride, b1);
    StoreQuad(to + 2 * toStride, b2);
    StoreQuad(to + 3 * toStride, b3);
}

// Four pixels in reverse order, changed by `pack`: a run of a half turn.
template <typename From, typename To, typename Pack = Unchanged>
void Reverse4(const From* from, To* to, const Pack& pack = Pack()) {
    Quad quad;
    LoadQuad(from, quad);
    quad = __builtin_shufflevector(quad, quad, 3, 2, 1, 0);
    pack(quad);
    StoreQuad(to, quad);
}

// Moves one tile between the buffer (from a pixel offset, along a path) and a tile of
// panel-ordered rows `tileStride` pixels apart. Whole 4 x 4 blocks (quarter turns) and
// runs of 4 (half turns) move as vectors; what is left at the edges pixel by pixel.
class TileMover {
  public:
    TileMover(const Path& p, int r, int c, ptrdiff_t s)
        : path(p), rows(r), columns(c), tileStride(s) {}

    int Rows() const { return rows; }
    int Columns() const { return columns; }

    // `pack` changes each pixel on its way into the tile (see SwapRedBlue).
    template <typename Cell, typename Pack = Unchanged>
    void Gather(const uint32_t* at, Cell* tile, const Pack& pack = Pack()) const {
        Visit(
            [&](ptrdiff_t buffer, ptrdiff_t cells, ptrdiff_t cellStride) {
                Transpose4(at + buffer, path.columnStep, tile + cells, cellStride, pack);
            },
            [&](ptrdiff_t buffer, ptrdiff_t cells) { Reverse4(at + buffer, tile + cells, pack); },
            [&](ptrdiff_t buffer, ptrdiff_t cell) {
                uint32_t pixel = at[buffer];
                pack(pixel);
                tile[cell] = Cell(pixel);
            });
    }

    template <typename Cell>
    void Scatter(const Cell* tile, uint32_t* at) const {
        Visit(
            [&](ptrdiff_t buffer, ptrdiff_t cells, ptrdiff_t cellStride) {
                Transpose4(tile + cells, cellStride, at + buffer, path.columnStep);
            },
            [&](ptrdiff_t buffer, ptrdiff_t cells) { Reverse4(tile + cells, at + buffer); },
            [&](ptrdiff_t buffer, ptrdiff_t cell) { at[buffer] = tile[cell]; });
    }

    // Quarter turns onto packed 24-bit panel memory (rows `tileStride` bytes apart): each
    // 4 x 4 block is turned in registers and each panel row's quad packed on its way by
    // `pack`, so a tile needs no buffer and no second pass through a row conversion.
    template <typename Pack>
    void GatherPacked(const uint32_t* at, uint8_t* panel, const Pack& pack) const {
        const ptrdiff_t step = path.columnStep;
        VisitQuarter(
            [&](ptrdiff_t buffer, uint8_t* first, ptrdiff_t down) {
                Quad q0, q1, q2, q3;
                LoadQuad(at + buffer, q0);
                LoadQuad(at + buffer + step, q1);
                LoadQuad(at + buffer + 2 * step, q2);
                LoadQuad(at + buffer + 3 * step, q3);
                TurnQuads(q0, q1, q2, q3);
                pack.Four(q0, first);
                pack.Four(q1, first + down);
                pack.Four(q2, first + 2 * down);
                pack.Four(q3, first + 3 * down);
            },
            [&](ptrdiff_t buffer, uint8_t* pixel) { pack.One(at[buffer], pixel); }, panel);
    }

    // The same backwards: packed 24-bit panel pixels to raw words in the buffer.
    void ScatterPacked(const uint8_t* panel, uint32_t* at) const {
        const ptrdiff_t step = path.columnStep;
        VisitQuarter(
            [&](ptrdiff_t buffer, uint8_t* first, ptrdiff_t down) {
                Quad q0, q1, q2, q3;
                Packed24::SpreadQuad(first, q0);
                Packed24::SpreadQuad(first + down, q1);
                Packed24::SpreadQuad(first + 2 * down, q2);
                Packed24::SpreadQuad(first + 3 * down, q3);
                TurnQuads(q0, q1, q2, q3);
                StoreQuad(at + buffer, q0);
                StoreQuad(at + buffer + step, q1);
                StoreQuad(at + buffer + 2 * step, q2);
                StoreQuad(at + buffer + 3 * step, q3);
            },
            [&](ptrdiff_t buffer, uint8_t* pixel) {
                uint32_t word = 0;
                std::memcpy(&word, pixel, 3);
                at[buffer] = word;
            },
            const_cast<uint8_t*>(panel));
    }

  private:
    // Calls block(buffer offset, the block's first panel row's first byte, bytes from one
    // of its panel rows to the next) per 4 x 4 block of a quarter turn, and
    // pixel(buffer offset, panel byte) for every other pixel. The buffer side of a block
    // starts at its lowest address.
    template <typename Block4, typename Pixel>
    void VisitQuarter(Block4 block, Pixel pixel, uint8_t* panel) const {
        const int blockRows = rows & ~3;
        const int blockColumns = columns & ~3;
        const bool backwards = path.rowStep < 0;
        const ptrdiff_t down = backwards ? -tileStride : tileStride;
        for (int j = 0; j < blockRows; j += 4) {
            const int first = backwards ? j + 3 : j;
            uint8_t* row = panel + first * tileStride;
            for (int i = 0; i < blockColumns; i += 4) {
                block(first * path.rowStep + i * path.columnStep, row + i * 3, down);
            }
        }
        for (int j = 0; j < rows; ++j) {
            for (int i = j < blockRows ? blockColumns : 0; i < columns; ++i) {
                pixel(j * path.rowStep + i * path.columnStep, panel + j * tileStride + i * 3);
            }
        }
    }

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

// Panel memory that can serve as the tile itself: pixels of `bytes` bytes, each on its
// natural alignment.
bool IsAligned(const uint8_t* memory, size_t stride, size_t bytes) {
    return reinterpret_cast<uintptr_t>(memory) % bytes == 0 && stride % bytes == 0;
}

// 16-bit panels and 32-bit ones in a layout of their own, turned: each buffer row is
// converted as it stands, in long runs, and only then are its cells turned onto the
// panel. The row conversions see the same long rows as an unturned transfer, and 16-bit
// cells are half the bytes of the colours they came from.
const int kBandRows = 32;  // buffer rows per band of a quarter turn

// Buffer columns converted per call: 512 bytes of converted cells a row, 128 32-bit or
// 256 16-bit ones. Fewer than 256 16-bit cells cost 16-bit layouts a tenth more at 90
// and 270 degrees, and 32-bit bands of more would take stack for no gain.
template <typename Cell>
constexpr int BandColumns() {
    return int(512 / sizeof(Cell));
}

// to[n-1-k] = from[k]: a buffer row's cells backwards, for a half turn. Eight cells go
// as four pairs: the pairs in reverse order, then the two cells of each pair swapped,
// which every vector unit does in a few whole-register steps.
void ReverseCells(const uint16_t* from, uint16_t* to, int n) {
    int k = 0;
    for (; k + 8 <= n; k += 8) {
        Quad pairs;
        std::memcpy(&pairs, from + k, sizeof(pairs));
        pairs = __builtin_shufflevector(pairs, pairs, 3, 2, 1, 0);
        pairs = (pairs << 16) | (pairs >> 16);
        std::memcpy(to + n - 8 - k, &pairs, sizeof(pairs));
    }
    for (; k < n; ++k) to[n - 1 - k] = from[k];
}

void ReverseCells(const uint32_t* from, uint32_t* to, int n) {
    int k = 0;
    for (; k + 4 <= n; k += 4) Reverse4(from + k, to + n - 4 - k);
    for (; k < n; ++k) to[n - 1 - k] = from[k];
}

// A half turn of a block in either direction. convert(buffer row, first column, cells,
// count) converts between the buffer and converted cells: it fills the cells on the way
// to the panel (toPanel) and empties them on the way back.
template <typename Cell, typename Convert>
void HalfTurn(const CScreen& screen, int x, int y, int w, int h, bool toPanel, Convert convert) {
    const CScreen::Block panel = screen.PanelBlock(x, y, w, h);
    constexpr int kBandColumns = BandColumns<Cell>();
    Cell cells[kBandColumns];
    for (int r = 0; r < h; ++r) {
        Cell* row = reinterpret_cast<Cell*>(screen.At(panel.x, panel.y + h - 1 - r));
        for (int done = 0; done < w; done += kBandColumns) {
            const int n = std::min(kBandColumns, w - done);
            // Buffer column c is panel column w-1-c: a reversal is its own inverse.
            if (toPanel) {
                convert(r, done, cells, n);
                ReverseCells(cells, row + (w - done - n), n);
            } else {
                ReverseCells(row + (w - done - n), cells, n);
                convert(r, done, cells, n);
            }
        }
    }
}

typedef uint16_t Cells8 __attribute__((vector_size(16)));

// Vectors are passed by reference here too (see LoadQuad).
void LoadCells(const uint16_t* from, Cells8& cells) {
    std::memcpy(&cells, from, sizeof(cells));
}

void StoreCells(uint16_t* to, const Cells8& cells) {
    std::memcpy(to, &cells, sizeof(cells));
}

// The low (L) and high (H) halves of two vectors interleaved in units of 1, 2 or 4
// cells: the three steps of an 8 x 8 transpose, each one instruction on common vector
// units.
#define VANTOR_L1(a, b) __builtin_shufflevector(a, b, 0, 8, 1, 9, 2, 10, 3, 11)
#define VANTOR_H1(a, b) __builtin_shufflevector(a, b, 4, 12, 5, 13, 6, 14, 7, 15)
#define VANTOR_L2(a, b) __builtin_shufflevector(a, b, 0, 1, 8, 9, 2, 3, 10, 11)
#define VANTOR_H2(a, b) __builtin_shufflevector(a, b, 4, 5, 12, 13, 6, 7, 14, 15)
#define VANTOR_L4(a, b) __builtin_shufflevector(a, b, 0, 1, 2, 3, 8, 9, 10, 11)
#define VANTOR_H4(a, b) __builtin_shufflevector(a, b, 4, 5, 6, 7, 12, 13, 14, 15)

// Row r of `to` takes column r of an 8 x 8 block of cells of `from`; either stride may be
// negative.
__attribute__((always_inline)) inline void Transpose8(const uint16_t* from, ptrdiff_t fromStride,
                                                      uint16_t* to, ptrdiff_t toStride) {
    Cells8 a0, a1, a2, a3, a4, a5, a6, a7;
    LoadCells(from, a0);
    LoadCells(from + fromStride, a1);
    LoadCells(from + 2 * fromStride, a2);
    LoadCells(from + 3 * fromStride, a3);
    LoadCells(from + 4 * fromStride, a4);
    LoadCells(from + 5 * fromStride, a5);
    LoadCells(from + 6 * fromStride, a6);
    LoadCells(from + 7 * fromStride, a7);
    // Pairs of rows, then quads of rows, then all eight, column by column.
    const Cells8 b0 = VANTOR_L1(a0, a1), b1 = VANTOR_H1(a0, a1);
    const Cells8 b2 = VANTOR_L1(a2, a3), b3 = VANTOR_H1(a2, a3);
    const Cells8 b4 = VANTOR_L1(a4, a5), b5 = VANTOR_H1(a4, a5);
    const Cells8 b6 = VANTOR_L1(a6, a7), b7 = VANTOR_H1(a6, a7);
    const Cells8 c0 = VANTOR_L2(b0, b2), c1 = VANTOR_H2(b0, b2);
    const Cells8 c2 = VANTOR_L2(b1, b3), c3 = VANTOR_H2(b1, b3);
    const Cells8 c4 = VANTOR_L2(b4, b6), c5 = VANTOR_H2(b4, b6);
    const Cells8 c6 = VANTOR_L2(b5, b7), c7 = VANTOR_H2(b5, b7);
    StoreCells(to, VANTOR_L4(c0, c4));
    StoreCells(to + toStride, VANTOR_H4(c0, c4));
    StoreCells(to + 2 * toStride, VANTOR_L4(c1, c5));
    StoreCells(to + 3 * toStride, VANTOR_H4(c1, c5));
    StoreCells(to + 4 * toStride, VANTOR_L4(c2, c6));
    StoreCells(to + 5 * toStride, VANTOR_H4(c2, c6));
    StoreCells(to + 6 * toStride, VANTOR_L4(c3, c7));
    StoreCells(to + 7 * toStride, VANTOR_H4(c3, c7));
}

#undef VANTOR_L1
#undef VANTOR_H1
#undef VANTOR_L2
#undef VANTOR_H2
#undef VANTOR_L4
#undef VANTOR_H4

// The square blocks a band turns in: as many cells as a 16-byte vector holds.
void TransposeCells(const uint16_t* from, ptrdiff_t fromStride, uint16_t* to, ptrdiff_t toStride) {
    Transpose8(from, fromStride, to, toStride);
}

void TransposeCells(const uint32_t* from, ptrdiff_t fromStride, uint32_t* to, ptrdiff_t toStride) {
    Transpose4(from, fromStride, to, toStride);
}

// Moves a band of `rows` converted buffer rows (kBandColumns cells apart), `n` cells
// each, onto the panel (toPanel) or back: buffer cell (k, c) is panel row c (rows
// `rowStride` cells apart from `first`) and column k, or column rows-1-k when
// `leftwards`.
template <typename Cell>
void TurnBand(Cell* band, int rows, int n, Cell* first, ptrdiff_t rowStride, bool leftwards,
              bool toPanel) {
    constexpr int kBandColumns = BandColumns<Cell>();
    const int side = int(16 / sizeof(Cell));
    const int blockRows = rows - rows % side;
    const int blockColumns = n - n % side;
    for (int k = 0; k < blockRows; k += side) {
        // Rows of a leftward band go bottom up, so the panel side runs forwards.
        Cell* cells = leftwards ? band + (k + side - 1) * kBandColumns : band + k * kBandColumns;
        const ptrdiff_t cellStride = leftwards ? -kBandColumns : kBandColumns;
        Cell* panel = first + (leftwards ? rows - side - k : k);
        for (int c = 0; c < blockColumns; c += side) {
            if (toPanel) {
                TransposeCells(cells + c, cellStride, panel + c * rowStride, rowStride);
            } else {
                TransposeCells(panel + c * rowStride, rowStride, cells + c, cellStride);
            }
        }
    }
    for (int k = 0; k < rows; ++k) {
        for (int c = k < blockRows ? blockColumns : 0; c < n; ++c) {
            Cell& cell = band[k * kBandColumns + c];
            Cell& pixel = first[c * rowStride + (leftwards ? rows - 1 - k : k)];
            toPanel ? void(pixel = cell) : void(cell = pixel);
        }
    }
}

// A quarter turn of a block in either direction; convert as for HalfTurn.
template <typename Cell, typename Convert>
void QuarterTurn(const CScreen& screen, int x, int y, int w, int h, bool toPanel, Convert convert) {
    const CScreen::Block panel = screen.PanelBlock(x, y, w, h);
    const bool clockwise = screen.getRotation() == 90;
    const ptrdiff_t panelStride = ptrdiff_t(screen.stride / sizeof(Cell));
    constexpr int kBandColumns = BandColumns<Cell>();
    Cell band[kBandRows * kBandColumns];
    for (int r0 = 0; r0 < h; r0 += kBandRows) {
        const int rows = std::min(kBandRows, h - r0);
        for (int c0 = 0; c0 < w; c0 += kBandColumns) {
            const int n = std::min(kBandColumns, w - c0);
            // At 90 buffer row r is panel column h-1-r and buffer column c panel row c;
            // at 270 buffer row r is panel column r and buffer column c panel row w-1-c.
            uint8_t* first = clockwise ? screen.At(panel.x + h - r0 - rows, panel.y + c0)
                                       : screen.At(panel.x + r0, panel.y + w - 1 - c0);
            const auto turn = [&] {
                TurnBand(band, rows, n, reinterpret_cast<Cell*>(first),
                         clockwise ? panelStride : -panelStride, clockwise, toPanel);
            };
            if (!toPanel) turn();
            for (int k = 0; k < rows; ++k) convert(r0 + k, c0, band + k * kBandColumns, n);
            if (toPanel) turn();
        }
    }
}

// Runs a turned transfer of cells of the panel's size; false where the panel's pixels
// are not such cells.
template <typename Cell, typename Convert>
bool TurnCells(const CScreen& screen, int x, int y, int w, int h, bool toPanel, Convert convert) {
    if (size_t(screen.format.getBytesPerPixel()) != sizeof(Cell) ||
        !IsAligned(screen.pStart, screen.stride, sizeof(Cell))) {
        return false;
    }
    if (screen.getRotation() == 180) {
        HalfTurn<Cell>(screen, x, y, w, h, toPanel, convert);
    } else {
        QuarterTurn<Cell>(screen, x, y, w, h, toPanel, convert);
    }
    return true;
}

bool IsXbgr8888(const CPixelFormat& f) {
    return f.bitsPerPixel == 32 && f.red.offset == 0 && f.red.length == 8 && f.green.offset == 8 &&
           f.green.length == 8 && f.blue.offset == 16 && f.blue.length == 8;
}

// A tile straight onto 32-bit panel memory in the canvases' own layout, and in
// XBGR8888. The mover is a copy of its own: the vector stores may write any memory, so
// the compiler would reload a mover it reaches by reference after every block.
typedef void (*GatherTile)(TileMover mover, const uint32_t* colours, uint32_t* panel);

void GatherAsIs(TileMover mover, const uint32_t* colours, uint32_t* panel) {
    mover.Gather(colours, panel);
}

void GatherSwapped(TileMover mover, const uint32_t* colours, uint32_t* panel) {
    mover.Gather(colours, panel, SwapRedBlue());
}

// Byte shuffles in turned transfers pay only where the vector unit has one: taken apart
// into byte moves they cost many times the shifts they replace. On x86-64 the functions
// that shuffle are built for SSSE3 and chosen per transfer where the CPU has it (GCC
// only, as in RowLoop.h); elsewhere they are used where the build's own vector unit
// shuffles (NEON).
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
#define VANTOR_SHUFFLE_TILE __attribute__((target("ssse3")))
#else
#define VANTOR_SHUFFLE_TILE
#endif

bool CanShuffle() {
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
    return __builtin_cpu_supports("ssse3");
#elif defined(__x86_64__) && !defined(__SSSE3__)
    return false;
#else
    return Packed24::kByteShuffles;
#endif
}

// The same swap as one byte shuffle a quad: the shifts take six instructions a quad,
// which left XBGR8888 turned about a fifth slower than the canvases' own layout.
struct ShuffleRedBlue {
    void operator()(Quad& c) const {
        const Packed24::Lane zero = {};
        c = Quad(__builtin_shufflevector(Packed24::Lane(c), zero, 2, 1, 0, 16, 6, 5, 4, 16, 10, 9,
                                         8, 16, 14, 13, 12, 16));
    }
    void operator()(uint32_t& c) const { SwapRedBlue()(c); }
};

VANTOR_SHUFFLE_TILE void GatherShuffled(TileMover mover, const uint32_t* colours, uint32_t* panel) {
    mover.Gather(colours, panel, ShuffleRedBlue());
}

// Canvas colours or raw words into packed 24-bit panel pixels, a quad or one at a time,
// with red and blue in the order of Packed24.h.
template <int Order>
struct PackInto24 {
    void Four(const Quad& quad, uint8_t* to) const { Packed24::PackQuad<Order>(quad, to); }
    void One(uint32_t word, uint8_t* to) const {
        const uint32_t packed = Packed24::Reorder<Order>(word);
        std::memcpy(to, &packed, 3);
    }
};

// The byte order of a packed 24-bit layout of 8-bit channels that the turned transfers
// pack inside the turn (RGB888 as it is, BGR888 swapped); 0 for every other layout, and
// on a big-endian CPU, where a word's low bytes are not its first ones.
int PackedOrder(const CPixelFormat& f) {
    const bool bytes = f.bitsPerPixel == 24 && f.red.length == 8 && f.green.length == 8 &&
                       f.blue.length == 8 && f.green.offset == 8 && Packed24::kLittleEndian;
    if (bytes && f.red.offset == 16 && f.blue.offset == 0) return Packed24::kKeepOrder;
    if (bytes && f.red.offset == 0 && f.blue.offset == 16) return Packed24::kSwapOrder;
    return 0;
}

// Raw packed 24-bit pixels, whatever their channels: their bytes keep their order.
bool IsPacked24(const CPixelFormat& f) {
    return f.getBytesPerPixel() == 3 && Packed24::kLittleEndian;
}

// Packing inside the turn pays only with a byte shuffle (see CanShuffle); otherwise
// packed 24-bit panels keep the tile route.
typedef void (*PackedTile)(TileMover mover, ptrdiff_t at, const uint32_t* from, uint8_t* panel);

template <int Order>
VANTOR_SHUFFLE_TILE void PackTile(TileMover mover, ptrdiff_t at, const uint32_t* from,
                                  uint8_t* panel) {
    mover.GatherPacked(from + at, panel, PackInto24<Order>());
}

VANTOR_SHUFFLE_TILE void SpreadTile(TileMover mover, ptrdiff_t at, const uint8_t* panel,
                                    uint32_t* to) {
    mover.ScatterPacked(panel, to + at);
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
// per tile; the mover's tile rows are `tileStride` pixels apart.
template <typename Rows, typename Tiles>
void CScreen::Walk(size_t pitch, int x, int y, int w, int h, ptrdiff_t tileStride, Rows rows,
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
    const Block panel = PanelBlock(x, y, w, h);
    const auto tile = [&](int i, int j) {
        const TileMover mover(path, std::min(kTileRows, panel.height - j),
                              std::min(kTileColumns, panel.width - i), tileStride);
        tiles(mover, path.base + j * path.rowStep + i * path.columnStep,
              At(panel.x + i, panel.y + j));
    };
    // Tiles go in the order that walks the buffer's rows forwards, as far as a turn
    // allows: at a quarter turn its rows are the panel's columns.
    const bool quarter = rotation != 180;
    for (int outer = 0; outer < (quarter ? panel.width : panel.height);
         outer += quarter ? kTileColumns : kTileRows) {
        for (int inner = 0; inner < (quarter ? panel.height : panel.width);
             inner += quarter ? kTileRows : kTileColumns) {
            quarter ? tile(outer, inner) : tile(inner, outer);
        }
    }
}

// A quarter turn onto packed 24-bit panel memory, tile by tile straight onto the panel
// (tiles(mover, offset in the buffer, the tile's first panel byte)); false, with nothing
// done, for any other turn or layout, or without a byte shuffle.
template <typename Tiles>
bool CScreen::PackedTurn(size_t pitch, int x, int y, int w, int h, Tiles tiles) const {
    if (rotation % 180 == 0 || !IsPacked24(format) || !CanShuffle()) return false;
    Walk(
        pitch, x, y, w, h, ptrdiff_t(stride), [](ptrdiff_t, uint8_t*, int) {}, tiles);
    return true;
}

// Turned tiles go straight onto 32-bit panel memory in the canvases' own layout and in
// XBGR8888, swapped on the way; other layouts go through a tile buffer and the layout's
// row conversion, or (16-bit ones, and other 32-bit ones) convert first (TurnCells).
void CScreen::EncodeBlock(const uint32_t* colours, size_t pitch, int x, int y, int w, int h) const {
    const auto encode = [&](int r, int c, auto* cells, int n) {
        format.EncodeRow(colours + size_t(r) * pitch + c, reinterpret_cast<uint8_t*>(cells),
                         size_t(n));
    };
    const int order = PackedOrder(format);
    const PackedTile pack = order == Packed24::kKeepOrder ? PackTile<Packed24::kKeepOrder>
                                                          : PackTile<Packed24::kSwapOrder>;
    if (order != 0 &&
        PackedTurn(pitch, x, y, w, h, [&](const TileMover& mover, ptrdiff_t at, uint8_t* device) {
            pack(mover, at, colours, device);
        })) {
        return;
    }
    const bool swapped = IsXbgr8888(format);
    if (rotation != 0 && (TurnCells<uint16_t>(*this, x, y, w, h, true, encode) ||
                          (!(format.IsNative() || swapped) &&
                           TurnCells<uint32_t>(*this, x, y, w, h, true, encode)))) {
        return;
    }
    const bool direct = (format.IsNative() || swapped) && IsAligned(pStart, stride, 4);
    GatherTile gather = swapped ? GatherSwapped : GatherAsIs;
    if (swapped && CanShuffle()) gather = GatherShuffled;
    uint32_t tile[kTileRows * kTileColumns];
    Walk(
        pitch, x, y, w, h, direct ? ptrdiff_t(stride / 4) : ptrdiff_t(kTileColumns),
        [&](ptrdiff_t at, uint8_t* device, int count) {
            format.EncodeRow(colours + at, device, size_t(count));
        },
        [&](const TileMover& mover, ptrdiff_t at, uint8_t* device) {
            uint32_t* panel = reinterpret_cast<uint32_t*>(device);
            if (direct) {
                gather(mover, colours + at, panel);
                return;
            }
            mover.Gather(colours + at, tile);
            for (int j = 0; j < mover.Rows(); ++j) {
                format.EncodeRow(tile + j * kTileColumns, device + j * stride,
                                 size_t(mover.Columns()));
            }
        });
}

// Raw 32-bit pixels are the panel's own words, so those tiles move straight between the
// panel and the background; 24-bit ones go through the row conversions. (16-bit ones
// never get here turned: see TurnCells.)
template <typename Direct, typename Converted>
void CScreen::RawTiles(Direct direct, Converted converted) const {
    if (format.getBytesPerPixel() == 4 && IsAligned(pStart, stride, 4)) {
        direct(uint32_t(), ptrdiff_t(stride / 4));
    } else {
        converted();
    }
}

void CScreen::ReadBlock(uint32_t* raw, size_t pitch, int x, int y, int w, int h) const {
    const auto read = [&](int r, int c, auto* cells, int n) {
        format.ReadRaw(reinterpret_cast<const uint8_t*>(cells), raw + size_t(r) * pitch + c,
                       size_t(n));
    };
    if (PackedTurn(pitch, x, y, w, h, [&](const TileMover& mover, ptrdiff_t at, uint8_t* device) {
            SpreadTile(mover, at, device, raw);
        })) {
        return;
    }
    if (rotation != 0 &&
        (TurnCells<uint16_t>(*this, x, y, w, h, false, read) ||
         (rotation == 180 && TurnCells<uint32_t>(*this, x, y, w, h, false, read)))) {
        return;
    }
    const auto rows = [&](ptrdiff_t at, uint8_t* device, int count) {
        format.ReadRaw(device, raw + at, size_t(count));
    };
    RawTiles(
        [&](auto cell, ptrdiff_t tileStride) {
            using Cell = decltype(cell);
            Walk(pitch, x, y, w, h, tileStride, rows,
                 [&](const TileMover& mover, ptrdiff_t at, uint8_t* device) {
                     mover.Scatter(reinterpret_cast<const Cell*>(device), raw + at);
                 });
        },
        [&] {
            uint32_t tile[kTileRows * kTileColumns];
            Walk(pitch, x, y, w, h, kTileColumns, rows,
                 [&](const TileMover& mover, ptrdiff_t at, uint8_t* device) {
                     for (int j = 0; j < mover.Rows(); ++j) {
                         format.ReadRaw(device + j * stride, tile + j * kTileColumns,
                                        size_t(mover.Columns()));
                     }
                     mover.Scatter(tile, raw + at);
                 });
        });
}

void CScreen::WriteBlock(const uint32_t* raw, size_t pitch, int x, int y, int w, int h) const {
    const auto write = [&](int r, int c, auto* cells, int n) {
        format.WriteRaw(raw + size_t(r) * pitch + c, reinterpret_cast<uint8_t*>(cells), size_t(n));
    };
    if (PackedTurn(pitch, x, y, w, h, [&](const TileMover& mover, ptrdiff_t at, uint8_t* device) {
            PackTile<Packed24::kKeepOrder>(mover, at, raw, device);
        })) {
        return;
    }
    if (rotation != 0 &&
        (TurnCells<uint16_t>(*this, x, y, w, h, true, write) ||
         (rotation == 180 && TurnCells<uint32_t>(*this, x, y, w, h, true, write)))) {
        return;
    }
    const auto rows = [&](ptrdiff_t at, uint8_t* device, int count) {
        format.WriteRaw(raw + at, device, size_t(count));
    };
    RawTiles(
        [&](auto cell, ptrdiff_t tileStride) {
            using Cell = decltype(cell);
            Walk(pitch, x, y, w, h, tileStride, rows,
                 [&](const TileMover& mover, ptrdiff_t at, uint8_t* device) {
                     mover.Gather(raw + at, reinterpret_cast<Cell*>(device));
                 });
        },
        [&] {
            uint32_t tile[kTileRows * kTileColumns];
            Walk(pitch, x, y, w, h, kTileColumns, rows,
                 [&](const TileMover& mover, ptrdiff_t at, uint8_t* device) {
                     mover.Gather(raw + at, tile);
                     for (int j = 0; j < mover.Rows(); ++j) {
                         format.WriteRaw(tile + j * kTileColumns, device + j * stride,
                                         size_t(mover.Columns()));
                     }
                 });
        });
}

}  // namespace Vantor
