// SPDX-License-Identifier: MIT
#ifndef VANTOR_SIM_PANEL_H
#define VANTOR_SIM_PANEL_H

#include <cstdint>
#include <string>
#include <vector>

#include "vantor_platform.h"

namespace VantorSim {

// The kind of panel the simulated program draws on: its pixel layout, padding at the
// end of each row and where the visible page sits in a larger virtual area.
struct Panel {
    int layout = VP_XRGB8888;
    int padBytes = 0;
    int panX = 0;
    int panY = 0;

    // "rgb565", "bgr888", "xrgb8888"...; false for a name we do not know.
    static bool ParseFormat(const std::string& name, int& layout);
    // One line for the environment and back ("layout:pad:x:y").
    std::string Encode() const;
    static bool Decode(const std::string& text, Panel& panel);
    // The device: a width x height page at (panX, panY) inside the virtual area.
    vp_screen Screen(int width, int height) const;
};

// The visible page of a framebuffer device as 0x00RRGGBB pixels, each read by the
// device's own bitfields; a channel of fewer than 8 bits is widened by repeating its
// top bits (so full intensity stays full). `memory` is the device's whole memory.
// Empty when the device cannot be read.
std::vector<uint32_t> ReadVisiblePage(const std::string& device, const uint8_t* memory);

}  // namespace VantorSim

#endif
