// SPDX-License-Identifier: MIT
#include "TestSupport.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace VantorTest {

bool GlyphBit(int code, int row, int column) {
    return (code * 7 + row * 3 + column) % 5 < 2;
}

std::vector<unsigned char> FontBytes(int width, int height, const std::vector<int>& codes) {
    std::vector<unsigned char> bytes(24, 0);
    std::memcpy(bytes.data(), "tinyfont", 9);
    auto put = [&bytes](int32_t value) {
        const unsigned char* raw = reinterpret_cast<const unsigned char*>(&value);
        bytes.insert(bytes.end(), raw, raw + 4);
    };
    const int32_t header[] = {int32_t(codes.size()), height, width};
    std::memcpy(bytes.data() + 12, header, sizeof(header));
    for (int code : codes) put(code);
    for (int code : codes) {
        for (int r = 0; r < height; ++r) {
            for (int c = 0; c < width; ++c) bytes.push_back(GlyphBit(code, r, c) ? 1 : 0);
        }
    }
    return bytes;
}

namespace {

// Directories made by a test run are removed when the run ends.
std::vector<std::string>& MadeDirectories() {
    static std::vector<std::string>* dirs = [] {
        std::atexit([] {
            std::error_code ignored;
            for (const std::string& dir : MadeDirectories())
                std::filesystem::remove_all(dir, ignored);
        });
        return new std::vector<std::string>();
    }();
    return *dirs;
}

}  // namespace

std::string MakeTempDir() {
    char pattern[] = "/tmp/vantor-test-XXXXXX";
    const char* dir = mkdtemp(pattern);
    if (dir == nullptr) throw std::runtime_error("mkdtemp failed");
    MadeDirectories().push_back(dir);
    return dir;
}

void WriteFile(const std::string& path, const std::vector<unsigned char>& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

int OpenDescriptors() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return int(std::distance(all, std::filesystem::directory_iterator()));
}

}  // namespace VantorTest
