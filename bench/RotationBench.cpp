// SPDX-License-Identifier: MIT
// What a full-screen Update costs with the picture turned, in each pixel layout, on the
// platform layer's virtual 800x480 panel, against the unturned Update of the same layout
// measured just before it (the "vs_unturned" column; the goal is at most 2).
// Run: build/bench/vantor_rotation_bench
#include <benchmark/benchmark.h>

#include <map>

#include "UpdateTiming.h"
#include "vantor.h"
#include "vantor_platform.h"

namespace {

const int kWidth = 800, kHeight = 480;

std::map<int, double> unturnedNanoseconds;  // per Update, by layout

void SetUpPanel(int layout, int rotation) {
    vp_reset();
    vp_dir_map("/usr/share/fonts/vantor", VANTOR_BENCH_FONTS);
    vp_screen screen = {kWidth, kHeight, kWidth, kHeight, 0, 0, layout};
    vp_fb_add("/dev/fb0", &screen);
    InitFramebuffer("/dev/fb0");
    setRotation(rotation);
    int width = 0, height = 0;
    getScreenSize(&width, &height);
    InitCanvas(0, 0, width, height);
    const char line[] = "The quick brown fox jumps over the lazy dog 0123456789";
    // The same thirty lines at every angle: they fit the short side too.
    for (int k = 0; k < 30; ++k) WriteText(0, k * 16, line, 0xFFFFFF, 0);
}

void TurnedUpdate(benchmark::State& state, int layout, int rotation) {
    SetUpPanel(layout, rotation);
    const double perUpdate = VantorBench::UpdateCpuNanoseconds(state);
    if (rotation == 0) unturnedNanoseconds[layout] = perUpdate;
    if (unturnedNanoseconds[layout] > 0) {
        state.counters["vs_unturned"] = perUpdate / unturnedNanoseconds[layout];
    }
    state.SetBytesProcessed(state.iterations() * int64_t(kWidth) * kHeight * 4);
}

#define TURNED(name, layout)                                                                 \
    BENCHMARK_CAPTURE(TurnedUpdate, name##_0, layout, 0)->Unit(benchmark::kMicrosecond);     \
    BENCHMARK_CAPTURE(TurnedUpdate, name##_90, layout, 90)->Unit(benchmark::kMicrosecond);   \
    BENCHMARK_CAPTURE(TurnedUpdate, name##_180, layout, 180)->Unit(benchmark::kMicrosecond); \
    BENCHMARK_CAPTURE(TurnedUpdate, name##_270, layout, 270)->Unit(benchmark::kMicrosecond)

}  // namespace

TURNED(XRGB8888, VP_XRGB8888);
TURNED(XBGR8888, VP_XBGR8888);
TURNED(RGB888, VP_RGB888);
TURNED(BGR888, VP_BGR888);
TURNED(RGB565, VP_RGB565);
TURNED(BGR565, VP_BGR565);

BENCHMARK_MAIN();
