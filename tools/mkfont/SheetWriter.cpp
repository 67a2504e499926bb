#include "SheetWriter.h"

#include <png.h>

#include <cstdio>
#include <vector>

#include "GlyphSet.h"
#include "vantor/BitmapFont.h"

namespace VantorFont {

namespace {

const uint8_t kPaper = 255, kInk = 0, kGrid = 160, kMissing = 224;

struct Image {
    int width, height;
    std::vector<uint8_t> grey;
    void Fill(int x, int y, int w, int h, uint8_t value) {
        for (int r = y; r < y + h; ++r) {
            for (int c = x; c < x + w; ++c) grey[size_t(r) * width + c] = value;
        }
    }
};

void DrawCell(Image& image, const Vantor::CBitmapFont& font, int code, int x, int y, int scale) {
    const int w = font.header.glyphWidth, h = font.header.glyphHeight;
    const unsigned char* bits = font.getGlyphFromCode(code);
    if (bits == nullptr) return image.Fill(x, y, w * scale, h * scale, kMissing);
    for (int r = 0; r < h; ++r) {
        for (int c = 0; c < w; ++c) {
            image.Fill(x + c * scale, y + r * scale, scale, scale, bits[r * w + c] ? kInk : kPaper);
        }
    }
}

void SavePng(const Image& image, const std::string& path) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) throw Refusal("cannot write " + path);
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (info == nullptr || setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        std::fclose(file);
        throw Refusal("cannot encode " + path);
    }
    png_init_io(png, file);
    png_set_IHDR(png, info, png_uint_32(image.width), png_uint_32(image.height), 8,
                 PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    for (int y = 0; y < image.height; ++y) {
        png_write_row(png, image.grey.data() + size_t(y) * image.width);
    }
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    if (std::fclose(file) != 0) throw Refusal("cannot write " + path);
}

}  // namespace

void WriteSheet(const Vantor::CBitmapFont& font, const std::string& path, int scale) {
    const int cellW = font.header.glyphWidth * scale + 1,
              cellH = font.header.glyphHeight * scale + 1;
    Image image{16 * cellW + 1, 16 * cellH + 1, {}};
    image.grey.assign(size_t(image.width) * image.height, kGrid);
    for (int code = 0; code < 256; ++code) {
        DrawCell(image, font, code, 1 + (code % 16) * cellW, 1 + (code / 16) * cellH, scale);
    }
    SavePng(image, path);
}

}  // namespace VantorFont
