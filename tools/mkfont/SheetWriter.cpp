// SPDX-License-Identifier: MIT
#include "SheetWriter.h"

#include <png.h>

#include "Refusal.h"
#include "vantor/BitmapFont.h"

namespace VantorFont {

SheetWriter::SheetWriter(const Vantor::CBitmapFont& font, int scale) : font(font), scale(scale) {
    // The library takes cells up to its byte limit; a sheet of those would not fit in memory.
    if (font.header.glyphWidth > 256 || font.header.glyphHeight > 256) {
        throw Refusal("cells larger than 256 pixels are not drawn on a sheet");
    }
    cellWidth = font.header.glyphWidth * scale + 1;
    cellHeight = font.header.glyphHeight * scale + 1;
    width = 16 * cellWidth + 1;
    height = 16 * cellHeight + 1;
    grey.assign(size_t(width) * height, kGrid);
    for (int code = 0; code < 256; ++code) DrawCell(code);
}

void SheetWriter::DrawCell(int code) {
    const int x = 1 + (code % 16) * cellWidth, y = 1 + (code / 16) * cellHeight;
    const int w = font.header.glyphWidth, h = font.header.glyphHeight;
    const unsigned char* bits = font.getGlyphFromCode(code);
    if (bits == nullptr) return Fill(x, y, w * scale, h * scale, kMissing);
    for (int r = 0; r < h; ++r) {
        for (int c = 0; c < w; ++c) {
            Fill(x + c * scale, y + r * scale, scale, scale, bits[r * w + c] ? kInk : kPaper);
        }
    }
}

void SheetWriter::Fill(int x, int y, int w, int h, uint8_t value) {
    for (int r = y; r < y + h; ++r) {
        for (int c = x; c < x + w; ++c) grey[size_t(r) * width + c] = value;
    }
}

void SheetWriter::Write(const std::string& path) const {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = png_uint_32(width);
    image.height = png_uint_32(height);
    image.format = PNG_FORMAT_GRAY;
    if (!png_image_write_to_file(&image, path.c_str(), 0, grey.data(), 0, nullptr)) {
        const std::string reason = image.message;
        png_image_free(&image);
        throw Refusal("cannot write " + path + ": " + reason);
    }
}

}  // namespace VantorFont
