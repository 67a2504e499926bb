// SPDX-License-Identifier: MIT
// Runs a fuzz target over saved inputs (files, or every file of a directory) without
// libFuzzer, so the corpus and every input that once found a fault replay in the normal
// build, plain and sanitized.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int argc, char** argv) {
    size_t replayed = 0;
    for (int i = 1; i < argc; ++i) {
        std::vector<std::filesystem::path> inputs = {argv[i]};
        if (std::filesystem::is_directory(argv[i])) {
            inputs.assign(std::filesystem::directory_iterator(argv[i]), {});
        }
        for (const auto& path : inputs) {
            std::ifstream file(path, std::ios::binary);
            const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
            LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
            ++replayed;
        }
    }
    std::printf("%zu inputs replayed\n", replayed);
    return replayed == 0 ? 1 : 0;
}
