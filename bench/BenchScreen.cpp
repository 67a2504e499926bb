// SPDX-License-Identifier: MIT
#include "BenchScreen.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "vantor.h"
#include "vantor_platform.h"

namespace VantorBench {

namespace {

const char kDevice[] = "/dev/fb0";

// A font whose glyphs are irregular enough that neither colour dominates a row.
std::vector<unsigned char> FontBytes() {
    std::vector<unsigned char> bytes(24, 0);
    std::memcpy(bytes.data(), "tinyfont", 9);
    const int32_t header[] = {255, 16, 8};
    std::memcpy(bytes.data() + 12, header, sizeof(header));
    for (int32_t code = 1; code < 256; ++code) {
        const unsigned char* raw = reinterpret_cast<const unsigned char*>(&code);
        bytes.insert(bytes.end(), raw, raw + 4);
    }
    for (int code = 1; code < 256; ++code) {
        for (int pixel = 0; pixel < 16 * 8; ++pixel) {
            bytes.push_back((code * 7 + pixel / 8 * 3 + pixel % 8) % 5 < 2 ? 1 : 0);
        }
    }
    return bytes;
}

}  // namespace

bool StartOn(const vp_screen& screen) {
    vp_reset();
    const std::vector<unsigned char> font = FontBytes();
    if (vp_fb_add(kDevice, &screen) != 0 ||
        vp_file_add("/usr/share/fonts/vantor/lr.tf", font.data(), font.size()) != 0 ||
        vp_file_add("/usr/share/fonts/vantor/lb.tf", font.data(), font.size()) != 0) {
        std::fprintf(stderr, "bench: the platform layer refused the virtual devices\n");
        return false;
    }
    if (InitFramebuffer(kDevice) == nullptr) {
        std::fprintf(stderr, "bench: InitFramebuffer failed on the virtual screen\n");
        return false;
    }
    return true;
}

bool StartLibrary() {
    static const vp_screen screen = {
        kScreenWidth, kScreenHeight, kScreenWidth, kScreenHeight, 32, 0};
    static const bool started = StartOn(screen);
    return started;
}

uint32_t* ScreenPixels() {
    return vp_fb_pixels(kDevice);
}

}  // namespace VantorBench
