// SPDX-License-Identifier: MIT
#ifndef VANTOR_TESTS_SHELLRUN_H
#define VANTOR_TESTS_SHELLRUN_H

// What the simulator's and the vantor command's suites share: running a shell command
// as a script would, and reading back the PNG screenshots the simulator writes.
#include <png.h>
#include <sys/wait.h>

#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

struct ShellRun {
    int status;
    std::string output;
};

// Runs command through sh with no input of its own; output is what it wrote on stdout
// and, unless asked not to, on stderr.
inline ShellRun Shell(const std::string& command, bool withStderr = true) {
    const std::string group = "{ " + command + "\n}" + (withStderr ? " 2>&1" : "") + " </dev/null";
    FILE* pipe = popen(group.c_str(), "r");
    ShellRun run{-1, ""};
    char line[512];
    while (std::fgets(line, sizeof(line), pipe)) run.output += line;
    run.status = WEXITSTATUS(pclose(pipe));
    return run;
}

struct Picture {
    unsigned width = 0, height = 0;
    std::vector<uint8_t> rgb;
    uint32_t at(unsigned x, unsigned y) const {
        const uint8_t* p = &rgb[(size_t(y) * width + x) * 3];
        return uint32_t(p[0]) << 16 | uint32_t(p[1]) << 8 | p[2];
    }
    // Pixels of this colour in [x0, x1) x [y0, y1).
    int count(uint32_t colour, unsigned x0, unsigned y0, unsigned x1, unsigned y1) const {
        int n = 0;
        for (unsigned y = y0; y < y1; ++y)
            for (unsigned x = x0; x < x1; ++x) n += at(x, y) == colour;
        return n;
    }
};

inline Picture ReadPng(const std::string& path) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str())) throw std::runtime_error(path);
    image.format = PNG_FORMAT_RGB;
    Picture picture{image.width, image.height, std::vector<uint8_t>(PNG_IMAGE_SIZE(image))};
    png_image_finish_read(&image, nullptr, picture.rgb.data(), 0, nullptr);
    return picture;
}

#endif
