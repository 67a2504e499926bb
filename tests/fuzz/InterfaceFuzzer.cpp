// Sequences of the C interface's non-waiting calls on the virtual display, with odd
// sizes, coordinates, texts, alignments, fonts and percentages. Each input starts from
// a fresh library state on a screen the input picks.
#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

#include "FuzzInput.h"
#include "TestSupport.h"
#include "vantor.h"
#include "vantor/Context.h"
#include "vantor_platform.h"

namespace {

void StartScreen(FuzzInput& in) {
    static const int kSizes[][2] = {{320, 240}, {1, 1}, {800, 480}, {17, 3}, {240, 320}};
    const auto& size = kSizes[in.Byte() % 5];
    vp_screen screen = {size[0], size[1], size[0], size[1], 32, 0};
    vp_fb_add("/dev/fb0", &screen);
    static const std::vector<unsigned char> font = [] {
        std::vector<int> codes(255);  // 1 to 255: every code a text can hold
        std::iota(codes.begin(), codes.end(), 1);
        return VantorTest::FontBytes(8, 16, codes);
    }();
    vp_file_add("/usr/share/fonts/vantor/lr.tf", font.data(), font.size());
    vp_file_add("/usr/share/fonts/vantor/lb.tf", font.data(), font.size());
    Vantor::VantorCleanup();
    Vantor::VantorInit();
    InitFramebuffer("/dev/fb0");
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
