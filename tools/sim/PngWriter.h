// SPDX-License-Identifier: MIT
#ifndef VANTOR_SIM_PNGWRITER_H
#define VANTOR_SIM_PNGWRITER_H

#include <cstdint>
#include <string>

namespace VantorSim {

// Writes a screen of 0x00RRGGBB pixels (rows of `stride` pixels) as an RGB PNG, each
// pixel enlarged to scale x scale so small panels stay crisp. Returns false on failure.
bool WritePng(const std::string& path, const uint32_t* pixels, int width, int height, int stride,
              int scale);

}  // namespace VantorSim

#endif
