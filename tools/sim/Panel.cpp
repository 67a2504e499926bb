// SPDX-License-Identifier: MIT
#include "Panel.h"

#include <fcntl.h>
#include <linux/fb.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

#include "io/UniqueFd.h"

namespace VantorSim {

namespace {

struct Name {
    const char* name;
    int layout;
    int bits;
};

const Name kNames[] = {
    {"xrgb8888", VP_XRGB8888, 32}, {"xbgr8888", VP_XBGR8888, 32}, {"rgbx8888", VP_RGBX8888, 32},
    {"bgrx8888", VP_BGRX8888, 32}, {"rgb888", VP_RGB888, 24},     {"bgr888", VP_BGR888, 24},
    {"rgb565", VP_RGB565, 16},     {"bgr565", VP_BGR565, 16},
};

int BitsOf(int layout) {
    for (const Name& n : kNames)
        if (n.layout == layout) return n.bits;
    return 32;
}

unsigned Widen(uint32_t raw, const fb_bitfield& field) {
    if (field.length == 0 || field.length > 8) return 0;
    const unsigned value = (raw >> field.offset) & ((1u << field.length) - 1);
    const int bits = int(field.length);
    unsigned out = 0;
    for (int shift = 8 - bits; shift > -bits; shift -= bits)
        out |= shift >= 0 ? value << shift : value >> -shift;
    return out & 0xFF;
}

}  // namespace

bool Panel::ParseFormat(const std::string& name, int& layout) {
    for (const Name& n : kNames) {
        if (name == n.name) {
            layout = n.layout;
            return true;
        }
    }
    return false;
}

std::string Panel::Encode() const {
    return std::to_string(layout) + ":" + std::to_string(padBytes) + ":" + std::to_string(panX) +
           ":" + std::to_string(panY);
}

bool Panel::Decode(const std::string& text, Panel& panel) {
    char extra = 0;
    return std::sscanf(text.c_str(), "%d:%d:%d:%d%c", &panel.layout, &panel.padBytes, &panel.panX,
                       &panel.panY, &extra) == 4;
}

vp_screen Panel::Screen(int width, int height) const {
    const int bits = BitsOf(layout);
    const int virtualWidth = width + panX;
    return vp_screen{width,         height, virtualWidth,
                     height + panY, bits,   virtualWidth * bits / 8 + padBytes,
                     layout,        panX,   panY};
}

std::vector<uint32_t> ReadVisiblePage(const std::string& device, const uint8_t* memory) {
    fb_var_screeninfo var{};
    fb_fix_screeninfo fix{};
    const Vantor::UniqueFd fd = Vantor::UniqueFd::Open(device.c_str(), O_RDONLY);
    const bool known = fd.IsOpen() && ioctl(fd.Get(), FBIOGET_VSCREENINFO, &var) == 0 &&
                       ioctl(fd.Get(), FBIOGET_FSCREENINFO, &fix) == 0;
    if (!known || memory == nullptr) return {};
    const size_t bytes = (var.bits_per_pixel + 7) / 8;
    std::vector<uint32_t> page;
    page.reserve(size_t(var.xres) * var.yres);
    for (size_t y = var.yoffset; y < size_t(var.yoffset) + var.yres; ++y) {
        const uint8_t* pixel = memory + y * fix.line_length + var.xoffset * bytes;
        for (size_t x = 0; x < var.xres; ++x, pixel += bytes) {
            uint32_t raw = 0;
            for (size_t i = 0; i < bytes; ++i) raw |= uint32_t(pixel[i]) << (8 * i);
            page.push_back(Widen(raw, var.red) << 16 | Widen(raw, var.green) << 8 |
                           Widen(raw, var.blue));
        }
    }
    return page;
}

}  // namespace VantorSim
