// SPDX-License-Identifier: MIT
#include "PngWriter.h"

#include <png.h>

#include <cstdio>
#include <vector>

namespace VantorSim {

bool WritePng(const std::string& path, const uint32_t* pixels, int width, int height, int stride,
              int scale) {
    if (pixels == nullptr || width < 1 || height < 1 || scale < 1) return false;
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = png_uint_32(width * scale);
    image.height = png_uint_32(height * scale);
    image.format = PNG_FORMAT_RGB;
    std::vector<uint8_t> rgb(size_t(image.width) * image.height * 3);
    for (size_t y = 0; y < image.height; ++y) {
        const uint32_t* row = pixels + (y / scale) * size_t(stride);
        uint8_t* out = rgb.data() + y * image.width * 3;
        for (size_t x = 0; x < image.width; ++x) {
            const uint32_t pixel = row[x / scale];
            *out++ = uint8_t(pixel >> 16);
            *out++ = uint8_t(pixel >> 8);
            *out++ = uint8_t(pixel);
        }
    }
    const bool written =
        png_image_write_to_file(&image, path.c_str(), 0, rgb.data(), 0, nullptr) != 0;
    png_image_free(&image);
    return written;
}

}  // namespace VantorSim
