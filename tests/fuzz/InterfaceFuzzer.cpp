// SPDX-License-Identifier: MIT
// Sequences of the C interface's non-waiting calls on the virtual display, with odd
// sizes, coordinates, texts, alignments, fonts and percentages. Each input starts from
// a fresh library state on a screen the input picks.
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

#include "TestSupport.h"
#include "vantor.h"
#include "vantor/Context.h"
#include "vantor_platform.h"

namespace {

// Turns the fuzzer's bytes into call arguments, favouring the values that break code:
// the ends of the int range, zero, one, and for floats NaN, infinities and huge values.
// Saved inputs depend on how many bytes each value takes.
class FuzzInput {
  public:
    FuzzInput(const uint8_t* data, size_t size) : data(data), size(size) {}
    bool Empty() const { return size == 0; }

    uint8_t Byte() {
        if (size == 0) return 0;
        --size;
        return *data++;
    }

    uint32_t Word() {
        uint32_t value = 0;
        for (int i = 0; i < 4; ++i) value = value << 8 | Byte();
        return value;
    }

    // Mostly a small coordinate or an edge value, now and then any int.
    int Int() {
        static const int kEdges[] = {INT_MIN, INT_MIN + 1, -65536, -1,          0,      1,   2,
                                     7,       8,           16,     100,         319,    320, 479,
                                     480,     4096,        65536,  INT_MAX - 1, INT_MAX};
        const uint8_t choice = Byte();
        if (choice < 128) return int(choice) - 32;
        if (choice < 240) return kEdges[choice % std::size(kEdges)];
        return static_cast<int>(Word());
    }

    // Mostly a percentage, or NaN, infinities, huge or negative values, or any bits.
    float Float() {
        const float nan = std::numeric_limits<float>::quiet_NaN();
        const float inf = std::numeric_limits<float>::infinity();
        const float kEdges[] = {nan,   inf,  -inf,   1e30f,  -1e30f,
                                -1.0f, 0.0f, 100.0f, 100.5f, 2147483648.0f};
        const uint8_t choice = Byte();
        if (choice < 160) return float(choice) - 30.0f;
        if (choice < 250) return kEdges[choice % std::size(kEdges)];
        const uint32_t bits = Word();
        float value;
        std::memcpy(&value, &bits, sizeof(value));
        return value;
    }

    // Mostly short texts of the input's own bytes; sometimes a very long run of one byte,
    // as a host that passes a whole file as one line would.
    std::string Text(size_t longest) {
        const uint8_t length = Byte();
        if (length == 255) return std::string(longest, char(Byte() | 1));
        std::string text;
        for (uint8_t i = 0; i < length % 48 && size > 0; ++i) {
            const char c = char(Byte());
            if (c != '\0') text.push_back(c);
        }
        return text;
    }

  private:
    const uint8_t* data;
    size_t size;
};

void StartScreen(FuzzInput& in) {
    static const int kSizes[][2] = {{320, 240}, {1, 1}, {800, 480}, {17, 3}, {240, 320}};
    const uint8_t choice = in.Byte();
    const auto& size = kSizes[choice % 5];
    // Every other input draws on a DRM card (a built-in panel) instead.
    const bool drm = (choice / 5) % 2 == 1;
    const char* device = drm ? "/dev/dri/card0" : "/dev/fb0";
    vp_screen screen = {size[0], size[1], size[0], size[1], 32, 0};
    const vp_drm_card card = {size[0], size[1], 14, 0};
    if (drm)
        vp_drm_add(device, &card);
    else
        vp_fb_add(device, &screen);
    static const std::vector<unsigned char> font = [] {
        std::vector<int> codes(255);  // 1 to 255: every code a text can hold
        std::iota(codes.begin(), codes.end(), 1);
        return VantorTest::FontBytes(8, 16, codes);
    }();
    vp_file_add("/usr/share/fonts/vantor/lr.tf", font.data(), font.size());
    vp_file_add("/usr/share/fonts/vantor/lb.tf", font.data(), font.size());
    Vantor::VantorCleanup();
    Vantor::VantorInit();
    InitFramebuffer(device);
    setTextEncoding(choice >> 7);       // half the inputs read their text as UTF-8
    setRotation(choice / 10 % 4 * 90);  // from the same byte, so saved inputs read alike
}

void ConvertColours(int requested) {
    const int size = requested % 4096;
    std::vector<unsigned char> source(size > 0 ? size : 0, 0x5a);
    std::vector<unsigned char> target(size > 0 ? size / 3 * 4 : 0);
    RGB_to_RGBA(source.empty() ? nullptr : source.data(), target.empty() ? nullptr : target.data(),
                size);
}

// Every argument is read in one fixed order before the call (a braced list is evaluated
// left to right), so an input means the same sequence whichever compiler built the
// fuzzer or its regression run.
struct Arguments {
    int op, x, y, w, h, font, align;
    uint32_t colour;
    float percent;
    bool noText;
    std::string text;

    const char* Text() const { return noText ? nullptr : text.c_str(); }
};

Arguments Read(FuzzInput& in) {
    return Arguments{in.Byte() % 18, in.Int(), in.Int(),  in.Int(),   in.Int(),
                     in.Int() % 3,   in.Int(), in.Word(), in.Float(), (in.Byte() & 1) != 0,
                     in.Text(300000)};
}

// The calls in the order an input's first byte picks them; saved inputs depend on it.
using Call = void (*)(const Arguments&);
const Call kCalls[] = {
    [](const Arguments& a) { InitCanvas(a.x, a.y, a.w, a.h); },
    [](const Arguments&) { Update(); },
    [](const Arguments&) { Restore(); },
    [](const Arguments&) { Clear(); },
    [](const Arguments& a) { WriteText(a.x, a.y, a.text.c_str(), a.colour, a.font); },
    [](const Arguments& a) { WriteInvText(a.x, a.y, a.text.c_str(), a.colour, a.font); },
    [](const Arguments& a) {
        WriteTextWithBackground(a.x, a.y, a.text.c_str(), a.colour, ~a.colour, a.font);
    },
    [](const Arguments& a) {
        WriteAlignedTextWithBackground(a.x, a.y, a.text.c_str(), a.colour, 0, a.font, a.align);
    },
    [](const Arguments& a) {
        int w, h;
        getFontSize(a.font, &w, &h);
        getScreenSize(&w, nullptr);
    },
    [](const Arguments& a) { ConvertColours(a.w); },
    [](const Arguments& a) { InitDialog(a.x, a.y, a.w, a.h); },
    [](const Arguments& a) {
        const char* lines[] = {a.text.c_str(), "", nullptr};
        ShowDialog(lines, 0, a.align);
    },
    [](const Arguments&) { HideDialog(); },
    [](const Arguments& a) { InitMenu(a.x, a.y); },
    [](const Arguments& a) { InitProgress(a.x, a.y, a.w, a.h); },
    [](const Arguments& a) { ShowProgress(a.Text(), a.align, a.percent); },
    [](const Arguments& a) { UpdateProgress(a.Text(), a.align, a.percent); },
    [](const Arguments&) { HideProgress(); },
};
static_assert(sizeof(kCalls) / sizeof(kCalls[0]) == 18, "Read picks one of 18 calls");

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzInput in(data, size);
    StartScreen(in);
    for (int calls = 0; calls < 64 && !in.Empty(); ++calls) {
        const Arguments arguments = Read(in);
        kCalls[arguments.op](arguments);
    }
    Vantor::VantorCleanup();
    Vantor::VantorInit();
    return 0;
}
