// Writes the font fuzzer's seeds from real font files: each font whole, a four-glyph cut
// of it, every truncation of that cut, and the cut with each header field pushed to the
// values that break arithmetic.
//   vantor_font_seeds OUTPUT_DIR FONT...
#include <climits>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<char>;

void Save(const std::string& path, const Bytes& bytes) {
    std::ofstream(path, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
}

// The header says four glyphs; the codes and bitmaps of the first four follow.
Bytes Cut(const Bytes& font) {
    if (font.size() < 24) return {};
    int32_t header[3];  // count, height, width
    std::memcpy(header, font.data() + 12, sizeof(header));
    const int32_t count = header[0], cell = header[1] * header[2];
    if (count < 4 || cell < 1 || font.size() < 24 + size_t(count) * (4 + size_t(cell))) return {};
    Bytes cut(font.begin(), font.begin() + 24 + 16);
    const int32_t four = 4;
    std::memcpy(cut.data() + 12, &four, 4);
    const size_t bitmaps = 24 + size_t(count) * 4;
    cut.insert(cut.end(), font.begin() + long(bitmaps), font.begin() + long(bitmaps + 4 * cell));
    return cut;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) return 2;
    const std::string out = argv[1];
    const int32_t extremes[] = {0, -1, 1, INT_MAX, INT_MIN, 4096, 4097, 1 << 30, 0x0b800000};
    for (int i = 2; i < argc; ++i) {
        std::ifstream file(argv[i], std::ios::binary);
        const Bytes font{std::istreambuf_iterator<char>(file), {}};
        const std::string name = out + "/font" + std::to_string(i - 1);
        Save(name, font);
        const Bytes cut = Cut(font);
        if (cut.empty()) return 1;
        for (size_t length = 0; length <= cut.size(); ++length) {
            Save(name + "-cut" + std::to_string(length),
                 Bytes(cut.begin(), cut.begin() + long(length)));
        }
        for (size_t field : {12u, 16u, 20u}) {
            for (int32_t value : extremes) {
                Bytes changed = cut;
                std::memcpy(changed.data() + field, &value, 4);
                Save(name + "-f" + std::to_string(field) + "-" + std::to_string(value), changed);
            }
        }
    }
    return 0;
}
