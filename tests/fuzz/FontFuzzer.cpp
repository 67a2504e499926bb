// SPDX-License-Identifier: MIT
// The font loader on any file: it may refuse, but never crash, overrun or allocate
// more than the file could describe.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>

#include "vantor/BitmapFont.h"

static const std::string kPath = "/tmp/vantor-fuzz-font-" + std::to_string(getpid()) + ".tf";

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FILE* file = std::fopen(kPath.c_str(), "wb");
    if (file == nullptr) return 0;
    if (size > 0) std::fwrite(data, 1, size, file);
    std::fclose(file);
    try {
        Vantor::CBitmapFont font(kPath.c_str());
        // Every glyph the text drawing could ask for must lie inside the table.
        volatile unsigned sum = 0;
        const size_t cell = size_t(font.header.glyphWidth) * font.header.glyphHeight;
        for (int code = 0; code < 256; ++code) {
            if (const unsigned char* glyph = font.getGlyphFromCode(code)) {
                sum = sum + glyph[0] + glyph[cell - 1];
            }
        }
    } catch (const std::runtime_error&) {
    }
    unlink(kPath.c_str());
    return 0;
}
