// SPDX-License-Identifier: MIT
// The simulator's key-script parser on any text: it parses or throws
// std::invalid_argument, and what it parses survives encoding and decoding unchanged.
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "KeyScript.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::vector<VantorSim::KeyStep> steps;
    try {
        steps = VantorSim::ParseKeyScript(text);
    } catch (const std::invalid_argument&) {
        return 0;
    }
    if (VantorSim::DecodeKeyScript(VantorSim::EncodeKeyScript(steps)) != steps) std::abort();
    return 0;
}
