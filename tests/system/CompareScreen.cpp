// Compares readings of a real screen with a reference picture of the same program's
// screen (the simulator's PNG). Exit 0 when every reading matches it pixel for pixel.
//   vantor_compare_screen REFERENCE.png KIND:FILE...
// KIND is raw (the device's memory: 0x00RRGGBB words, rows of the reference's width),
// ppm (a binary PPM such as fbcat or QEMU write) or swapped-ppm (a PPM of a driver that
// declares red in the low byte, whose reader therefore shows red and blue exchanged).
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

// The device's words are bytes blue, green, red, 0 in memory; the fourth must stay 0.
bool ReadRaw(const std::string& path, int width, int height, Picture& picture) {
    const std::vector<uint8_t> raw = Slurp(path);
    if (raw.size() < size_t(width) * height * 4) return false;
    picture = {width, height, std::vector<uint8_t>(size_t(width) * height * 3)};
    for (size_t i = 0; i < size_t(width) * height; ++i) {
        const uint8_t* word = &raw[i * 4];
        const uint8_t pixel[3] = {word[2], word[1], word[0]};
        for (int c = 0; c < 3; ++c) picture.rgb[i * 3 + c] = word[3] == 0 ? pixel[c] : 0x5A;
    }
    return true;
}

// "P6", width, height and maximum separated by white space, one more white space
// character, then the pixels.
bool ReadPpm(const std::string& path, bool swapped, Picture& picture) {
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
    for (size_t i = 0; swapped && i < bytes; i += 3) std::swap(picture.rgb[i], picture.rgb[i + 2]);
    return true;
}

bool Read(const std::string& argument, const Picture& reference, Picture& picture) {
    const size_t colon = argument.find(':');
    const std::string kind = argument.substr(0, colon), path = argument.substr(colon + 1);
    if (kind == "raw") return ReadRaw(path, reference.width, reference.height, picture);
    if (kind == "ppm" || kind == "swapped-ppm") return ReadPpm(path, kind != "ppm", picture);
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
        const int differ = Read(argv[n], reference, reading) ? Differing(reading, reference) : -1;
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
