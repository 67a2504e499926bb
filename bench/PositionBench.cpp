// SPDX-License-Identifier: MIT
// How fast a full-screen Update is wherever the canvas sits and whatever the screen's
// layout, through the C interface on a screen the library maps as it maps a device (a
// page-aligned shared mapping of a file). Each canvas starts at column 0 ... 15, on
// rows of exactly the screen's width and on padded rows, in every pixel layout; each
// is timed against the floor of the same bytes in the same run: fill the 32-bit canvas,
// copy the screen's bytes of those rows out to a 64-byte-aligned buffer and back.
// Path and floor run in turns, so load from elsewhere falls on both alike; the ratio
// reported is the median of the turns.
// Run: scripts/bench.sh, or build/bench/vantor_position_bench [--columns] [--rounds N]
//      [--only update|text|rgba|XRGB8888|RGB565|...]
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include "BenchScreen.h"
#include "vantor.h"
#include "vantor_platform.h"

namespace {

using VantorBench::kScreenHeight;
using VantorBench::kScreenWidth;

const int kColumns = 16;       // canvas columns 0 ... 15
const int kPaddingPixels = 4;  // padded rows: each row starts elsewhere within 64 bytes
const double kBatchSeconds = 0.004;

int rounds = 7;
bool everyColumn = false;
std::string only;  // --only NAME: just the lines whose path or layout is NAME

double CpuSeconds() {
    timespec used;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return double(used.tv_sec) + double(used.tv_nsec) * 1e-9;
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Heap memory on a 64-byte boundary, as the floor's own copies deserve.
struct Buffer {
    explicit Buffer(size_t bytes)
        : data(static_cast<unsigned char*>(::operator new(bytes, std::align_val_t(64)))),
          size(bytes) {
        std::memset(data, 0x5A, bytes);
    }
    ~Buffer() { ::operator delete(data, std::align_val_t(64)); }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    unsigned char* data;
    size_t size;
};

struct Result {
    double path;   // seconds per run, median
    double floor;  // seconds per run, median
    double ratio;  // median of the per-turn ratios
};

long RunsPerBatch(const std::function<void()>& work) {
    long runs = 1;
    for (;;) {
        const double start = CpuSeconds();
        for (long k = 0; k < runs; ++k) work();
        if (CpuSeconds() - start >= kBatchSeconds) return runs;
        runs *= 2;
    }
}

double BatchSeconds(const std::function<void()>& work, long runs) {
    const double start = CpuSeconds();
    for (long k = 0; k < runs; ++k) work();
    return (CpuSeconds() - start) / double(runs);
}

Result Compare(const std::function<void()>& path, const std::function<void()>& floor) {
    const long pathRuns = RunsPerBatch(path);
    const long floorRuns = RunsPerBatch(floor);
    std::vector<double> paths, floors, ratios;
    for (int turn = 0; turn < rounds; ++turn) {
        floors.push_back(BatchSeconds(floor, floorRuns));
        paths.push_back(BatchSeconds(path, pathRuns));
        ratios.push_back(paths.back() / floors.back());
    }
    return {Median(paths), Median(floors), Median(ratios)};
}

// memcpy, except that rows whose destination lies just past their source modulo 4 KiB
// go in pieces: whole, they stall glibc's copy on x86-64 (see CopyRow in the library),
// and a floor that stalls would flatter the path it is compared with.
void CopyBytes(unsigned char* to, const unsigned char* from, size_t bytes) {
    const uintptr_t distance = (uintptr_t(to) - uintptr_t(from)) % 4096;
    for (size_t done = 0; done < bytes;) {
        const size_t piece = distance < 64 ? std::min<size_t>(512, bytes - done) : bytes - done;
        std::memcpy(to + done, from + done, piece);
        done += piece;
    }
}

// Fill the canvas, copy `rowBytes` of each screen row out and back: the least a
// repaint of that many pixels can cost.
class Floor {
  public:
    Floor(int width, size_t rowBytes, size_t stride)
        : canvas(size_t(width) * kScreenHeight * 4),
          saved(rowBytes * kScreenHeight),
          row(rowBytes),
          screenStride(stride) {}
    void operator()() {
        unsigned char* screen = reinterpret_cast<unsigned char*>(vp_fb_pixels("/dev/fb0"));
        uint32_t* pixels = reinterpret_cast<uint32_t*>(canvas.data);
        std::fill(pixels, pixels + canvas.size / 4, 0u);
        for (int r = 0; r < kScreenHeight; ++r) {
            CopyBytes(saved.data + r * row, screen + r * screenStride, row);
        }
        for (int r = 0; r < kScreenHeight; ++r) {
            CopyBytes(screen + r * screenStride, saved.data + r * row, row);
        }
    }

  private:
    Buffer canvas;
    Buffer saved;
    size_t row;
    size_t screenStride;
};

struct Layout {
    const char* name;
    int layout;
    int bytes;
    double goal;
};

const Layout kLayouts[] = {
    {"XRGB8888", VP_XRGB8888, 4, 1.2}, {"XBGR8888", VP_XBGR8888, 4, 1.5},
    {"BGRX8888", VP_BGRX8888, 4, 1.5}, {"RGB565", VP_RGB565, 2, 1.5},
    {"BGR565", VP_BGR565, 2, 1.5},     {"RGB888", VP_RGB888, 3, 2.0},
    {"BGR888", VP_BGR888, 3, 2.0},
};

bool allMet = true;

void PrintVerdict(const char* path, const char* layout, const char* rows, const Result& first,
                  const Result& worst, int worstColumn, double goal) {
    const bool met = worst.ratio <= goal;
    allMet = allMet && met;
    std::printf("%-8s %-9s %-7s %6.2f %6.2f %3d %9.1f %9.1f  <= %.1f %s\n", path, layout, rows,
                first.ratio, worst.ratio, worstColumn, worst.path * 1e6, worst.floor * 1e6, goal,
                met ? "ok" : "MISS");
    std::fflush(stdout);
}

// One line per layout and row kind: column 0, the worst column and its times.
void SweepColumns(const char* path, const Layout& layout, bool padded, bool withText) {
    if (!only.empty() && only != path && only != layout.name) return;
    const size_t stride = size_t(kScreenWidth + (padded ? kPaddingPixels : 0)) * layout.bytes;
    vp_screen screen = {
        kScreenWidth, kScreenHeight, kScreenWidth, kScreenHeight, 0, padded ? int(stride) : 0,
        layout.layout};
    if (!VantorBench::StartOn(screen)) std::exit(1);
    Result first{}, worst{};
    int worstColumn = 0;
    for (int x = 0; x < kColumns; ++x) {
        const int width = kScreenWidth - x;
        InitCanvas(x, 0, width, kScreenHeight);
        const char line[] = "The quick brown fox jumps over the lazy dog 0123456789";
        for (int k = 0; withText && k < 30; ++k) WriteText(0, k * 16, line, 0xFFFFFF, 0);
        Floor floor(width, size_t(width) * layout.bytes, stride);
        const Result result = Compare([] { Update(); }, std::ref(floor));
        if (everyColumn) {
            std::printf("  column %2d: %9.1f us, floor %9.1f us, ratio %.2f\n", x,
                        result.path * 1e6, result.floor * 1e6, result.ratio);
        }
        if (x == 0) first = result;
        if (x == 0 || result.ratio > worst.ratio) {
            worst = result;
            worstColumn = x;
        }
    }
    PrintVerdict(path, layout.name, padded ? "padded" : "exact", first, worst, worstColumn,
                 withText ? 2.0 : layout.goal);
}

// A screenful of packed RGB bytes against one copy of the 32-bit output.
void Conversion() {
    if (!only.empty() && only != "rgba") return;
    const size_t pixels = size_t(kScreenWidth) * kScreenHeight;
    Buffer rgb(pixels * 3), rgba(pixels * 4), copy(pixels * 4);
    for (size_t i = 0; i < rgb.size; ++i) rgb.data[i] = static_cast<unsigned char>(i * 13);
    const Result result = Compare([&] { RGB_to_RGBA(rgb.data, rgba.data, int(rgb.size)); },
                                  [&] { std::memcpy(copy.data, rgba.data, copy.size); });
    PrintVerdict("rgba", "-", "-", result, result, 0, 2.0);
}

void PrintLoad(const char* when) {
    double load[3] = {0, 0, 0};
    if (FILE* file = std::fopen("/proc/loadavg", "r")) {
        if (std::fscanf(file, "%lf %lf %lf", &load[0], &load[1], &load[2]) != 3) load[0] = -1;
        std::fclose(file);
    }
    std::printf("load average %s: %.2f %.2f %.2f\n", when, load[0], load[1], load[2]);
}

}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--columns") == 0) everyColumn = true;
        if (std::strcmp(argv[i], "--rounds") == 0 && i + 1 < argc) rounds = std::atoi(argv[++i]);
        if (std::strcmp(argv[i], "--only") == 0 && i + 1 < argc) only = argv[++i];
    }
    rounds = std::max(rounds, 1);
    PrintLoad("before");
    std::printf(
        "ratio = path / floor of the same bytes (median of %d turns); worst of columns "
        "0-%d\n",
        rounds, kColumns - 1);
    std::printf("%-8s %-9s %-7s %6s %6s %3s %9s %9s  %-6s\n", "path", "layout", "rows", "col 0",
                "worst", "at", "path us", "floor us", "goal");
    for (const bool padded : {false, true}) {
        SweepColumns("update", kLayouts[0], padded, false);
        SweepColumns("text", kLayouts[0], padded, true);
    }
    for (const Layout& layout : kLayouts) {
        if (layout.layout == VP_XRGB8888) continue;
        for (const bool padded : {false, true}) SweepColumns("update", layout, padded, false);
    }
    Conversion();
    PrintLoad("after");
    std::printf("%s\n", allMet ? "every goal met" : "some goals missed");
    return 0;
}
