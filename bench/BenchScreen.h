// SPDX-License-Identifier: MIT
#ifndef VANTOR_BENCH_BENCHSCREEN_H
#define VANTOR_BENCH_BENCHSCREEN_H

#include <cstdint>

#include "vantor_platform.h"

namespace VantorBench {

const int kScreenWidth = 800;
const int kScreenHeight = 480;

// The library's state on a virtual 800x480 XRGB8888 framebuffer of the platform layer,
// with two 8x16 fonts holding codes 1-255 at their installed paths. Made once per
// process; returns false (and says why) when the library does not start.
bool StartLibrary();
uint32_t* ScreenPixels();

// Starts the library afresh on a virtual framebuffer of this geometry and layout,
// with the same fonts; the library maps it as a device: a shared, page-aligned mapping.
bool StartOn(const vp_screen& screen);

}  // namespace VantorBench

#endif
