// Compares readings of a real screen with a reference picture of the same program's
// screen (the simulator's PNG). Exit 0 when every reading matches it pixel for pixel.
//   vantor_compare_screen REFERENCE.png KIND:FILE...
// KIND is device (FILE.raw, the device's memory, decoded by the layout the driver
// declared, FILE.layout as vantor_system_screen prints it; channels of fewer than 8 bits
// widened by repeating their top bits) or ppm (a binary PPM such as QEMU's screendump).
#include <png.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

struct Picture {
    int width = 0, height = 0;
    std::vector<uint8_t> rgb;  // three bytes a pixel
};

std::vector<uint8_t> Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(in),
                                std::istreambuf_iterator<char>());
}

bool ReadPng(const char* path, Picture& picture) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path)) return false;
    image.format = PNG_FORMAT_RGB;
    picture.width = int(image.width);
    picture.height = int(image.height);
    picture.rgb.resize(PNG_IMAGE_SIZE(image));
    return png_image_finish_read(&image, nullptr, picture.rgb.data(), 0, nullptr) != 0;
}

struct Layout {
    unsigned bits, line, xoffset, yoffset, xres, yres, field[3][2];  // offset, length
};

unsigned Widen(uint32_t pixel, const unsigned field[2]) {
    const int bits = int(field[1]);
    if (bits < 1 || bits > 8) return 0;
    const unsigned value = (pixel >> field[0]) & ((1u << bits) - 1);
    unsigned out = 0;
    for (int shift = 8 - bits; shift > -bits; shift -= bits)
        out |= shift >= 0 ? value << shift : value >> -shift;
    return out & 0xFF;
}

// The visible page of the memory; a pixel with bits set outside its three channels (the
// library writes those as 0) reads as 0x5A5A5A so it cannot pass.
bool ReadDevice(const std::string& base, Picture& picture) {
    Layout l = {};
    std::ifstream text(base + ".layout");
    std::string word;
    text >> word >> l.bits >> l.line >> l.xoffset >> l.yoffset >> l.xres >> l.yres;
    for (auto& field : l.field) text >> field[0] >> field[1];
    const std::vector<uint8_t> raw = Slurp(base + ".raw");
    const size_t bytes = l.bits / 8;
    if (!text || word != "layout" || bytes < 2 || bytes > 4 ||
        raw.size() < size_t(l.yoffset + l.yres) * l.line)
        return false;
    picture = {int(l.xres), int(l.yres), {}};
    uint32_t used = 0;
    for (const auto& field : l.field) used |= ((1u << field[1]) - 1) << field[0];
    for (size_t y = l.yoffset; y < l.yoffset + l.yres; ++y) {
        for (size_t x = l.xoffset; x < l.xoffset + l.xres; ++x) {
            uint32_t pixel = 0;
            for (size_t i = 0; i < bytes; ++i)
                pixel |= uint32_t(raw[y * l.line + x * bytes + i]) << (8 * i);
            for (const auto& field : l.field)
                picture.rgb.push_back((pixel & ~used) == 0 ? uint8_t(Widen(pixel, field)) : 0x5A);
        }
    }
    return true;
}

// "P6", width, height and maximum separated by white space, one more white space
// character, then the pixels.
bool ReadPpm(const std::string& path, Picture& picture) {
    const std::vector<uint8_t> file = Slurp(path);
    std::istringstream header(std::string(file.begin(), file.end()));
    std::string magic;
    int maximum = 0;
    header >> magic >> picture.width >> picture.height >> maximum;
    if (!header || magic != "P6" || maximum != 255) return false;
    const size_t start = size_t(header.tellg()) + 1;
    const size_t bytes = size_t(picture.width) * picture.height * 3;
    if (file.size() < start + bytes) return false;
    picture.rgb.assign(file.begin() + long(start), file.begin() + long(start + bytes));
    return true;
}

bool Read(const std::string& argument, Picture& picture) {
    const size_t colon = argument.find(':');
    const std::string kind = argument.substr(0, colon), path = argument.substr(colon + 1);
    if (kind == "device") return ReadDevice(path, picture);
    if (kind == "ppm") return ReadPpm(path, picture);
    return false;
}

int Differing(const Picture& a, const Picture& b) {
    if (a.width != b.width || a.height != b.height) return -1;
    int differ = 0;
    for (size_t i = 0; i < a.rgb.size(); i += 3)
        differ +=
            a.rgb[i] != b.rgb[i] || a.rgb[i + 1] != b.rgb[i + 1] || a.rgb[i + 2] != b.rgb[i + 2];
    return differ;
}

}  // namespace

int main(int argc, char** argv) {
    Picture reference;
    if (argc < 3 || !ReadPng(argv[1], reference)) {
        std::fprintf(stderr, "usage: REFERENCE.png KIND:FILE... (reference unreadable?)\n");
        return 2;
    }
    int inked = 0;
    for (size_t i = 0; i < reference.rgb.size(); i += 3)
        inked += (reference.rgb[i] | reference.rgb[i + 1] | reference.rgb[i + 2]) != 0;
    bool same = inked > 1000;  // a black reference would prove nothing
    std::printf("reference %s: %dx%d, %d pixels not black\n", argv[1], reference.width,
                reference.height, inked);
    for (int n = 2; n < argc; ++n) {
        Picture reading;
        const int differ = Read(argv[n], reading) ? Differing(reading, reference) : -1;
        if (differ < 0)
            std::printf("%s: unreadable, or not %dx%d\n", argv[n], reference.width,
                        reference.height);
        else
            std::printf("%s: %d of %d pixels differ\n", argv[n], differ,
                        reference.width * reference.height);
        same = same && differ == 0;
    }
    return same ? 0 : 1;
}
