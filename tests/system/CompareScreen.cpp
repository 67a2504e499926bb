// Compares the screen read from a real framebuffer (a raw dump, and fbcat's PPM) with
// the simulator's PNG of the same program. Exit 0 when every pixel matches.
//   vantor_compare_screen RAW PPM PNG WIDTH HEIGHT
#include <png.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

std::vector<uint8_t> Slurp(const char* path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(in),
                                std::istreambuf_iterator<char>());
}

int Fail(const std::string& message) {
    std::fprintf(stderr, "compare: %s\n", message.c_str());
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 6) return Fail("usage: RAW PPM PNG WIDTH HEIGHT");
    const int width = std::atoi(argv[4]), height = std::atoi(argv[5]);
    const std::vector<uint8_t> raw = Slurp(argv[1]);
    if (raw.size() < size_t(width) * height * 4) return Fail("the raw dump is short");

    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, argv[3])) return Fail("cannot read the PNG");
    image.format = PNG_FORMAT_RGB;
    std::vector<uint8_t> rgb(PNG_IMAGE_SIZE(image));
    png_image_finish_read(&image, nullptr, rgb.data(), 0, nullptr);
    if (int(image.width) != width || int(image.height) != height) return Fail("sizes differ");

    int differ = 0, inked = 0;
    for (int i = 0; i < width * height; ++i) {
        // The device word is 0x00RRGGBB, bytes blue, green, red, 0 in memory.
        const uint8_t* word = &raw[size_t(i) * 4];
        const uint8_t* sim = &rgb[size_t(i) * 3];
        differ += word[2] != sim[0] || word[1] != sim[1] || word[0] != sim[2] || word[3] != 0;
        inked += word[0] | word[1] | word[2] ? 1 : 0;
    }
    std::printf("real framebuffer vs simulator: %d of %d pixels differ (%d not black)\n", differ,
                width * height, inked);

    // fbcat reads through the driver's own colour layout; vfb puts red in the low byte,
    // so its picture shows our red as blue: compare with the channels exchanged.
    const std::vector<uint8_t> ppm = Slurp(argv[2]);
    const size_t pixels =
        ppm.size() >= size_t(width) * height * 3 ? ppm.size() - size_t(width) * height * 3 : 0;
    int fbcatDiffer = -1;
    if (pixels > 0) {
        fbcatDiffer = 0;
        for (int i = 0; i < width * height; ++i) {
            const uint8_t* seen = &ppm[pixels + size_t(i) * 3];
            const uint8_t* sim = &rgb[size_t(i) * 3];
            fbcatDiffer += seen[0] != sim[2] || seen[1] != sim[1] || seen[2] != sim[0];
        }
        std::printf("fbcat vs simulator (red and blue exchanged by vfb): %d pixels differ\n",
                    fbcatDiffer);
    }
    return differ == 0 && inked > 1000 && fbcatDiffer == 0 ? 0 : 1;
}
