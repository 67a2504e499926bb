// SPDX-License-Identifier: MIT
// What a full-screen Update costs on each pixel layout, through the C interface on the
// platform layer's virtual panel, and how that compares with the canvas's own layout
// measured in the same run (the "vs_xrgb8888" column). DRM_XRGB8888 is the same screen
// as a DRM card: a dumb buffer and a DIRTYFB per Update instead of the pan.
// Run: build/bench/vantor_layout_bench
#include <benchmark/benchmark.h>

#include "UpdateTiming.h"
#include "vantor.h"
#include "vantor_platform.h"

namespace {

const int kWidth = 800, kHeight = 480;

const int kDrmCard = -1;  // not a layout: the virtual DRM card, which scans out XRGB8888

double xrgbNanoseconds = 0;  // per Update, from the first benchmark of the run

void SetUpPanel(int layout) {
    vp_reset();
    vp_dir_map("/usr/share/fonts/vantor", VANTOR_BENCH_FONTS);
    if (layout == kDrmCard) {
        const vp_drm_card card = {kWidth, kHeight, 14 /* eDP */, 0};
        vp_drm_add("/dev/dri/card0", &card);
        InitFramebuffer("/dev/dri/card0");
    } else {
        vp_screen screen = {kWidth, kHeight, kWidth, kHeight, 0, 0, layout};
        vp_fb_add("/dev/fb0", &screen);
        InitFramebuffer("/dev/fb0");
    }
    InitCanvas(0, 0, kWidth, kHeight);
}

void FullScreenUpdate(benchmark::State& state, int layout) {
    SetUpPanel(layout);
    const double perUpdate = VantorBench::UpdateCpuNanoseconds(state);
    if (layout == VP_XRGB8888) xrgbNanoseconds = perUpdate;
    if (xrgbNanoseconds > 0) state.counters["vs_xrgb8888"] = perUpdate / xrgbNanoseconds;
    state.SetBytesProcessed(state.iterations() * int64_t(kWidth) * kHeight * 4);
}

}  // namespace

// Registered in this order so XRGB8888 runs first and the others compare with it.
BENCHMARK_CAPTURE(FullScreenUpdate, XRGB8888, VP_XRGB8888)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(FullScreenUpdate, DRM_XRGB8888, kDrmCard)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(FullScreenUpdate, XBGR8888, VP_XBGR8888)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(FullScreenUpdate, BGRX8888, VP_BGRX8888)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(FullScreenUpdate, RGB888, VP_RGB888)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(FullScreenUpdate, BGR888, VP_BGR888)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(FullScreenUpdate, RGB565, VP_RGB565)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(FullScreenUpdate, BGR565, VP_BGR565)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
