// Sequences of the C interface's non-waiting calls on the virtual display, with odd
// sizes, coordinates, texts, alignments, fonts and percentages. Each input starts from
// a fresh library state on a screen the input picks.
#include <climits>
#include <cstdint>
#include <string>
#include <vector>

#include "FuzzInput.h"
#include "vantor.h"
#include "vantor/Context.h"
#include "vantor_platform.h"

namespace {

// A complete 8x16 font of codes 1 to 255, each glyph a different pattern.
std::vector<unsigned char> MakeFont() {
    std::vector<unsigned char> bytes(24 + 255 * 4 + 255 * 128);
    const char magic[] = "tinyfont";
    std::copy(magic, magic + 9, bytes.begin());
    const int32_t header[3] = {255, 16, 8};
    std::copy(reinterpret_cast<const unsigned char*>(header),
              reinterpret_cast<const unsigned char*>(header) + 12, bytes.begin() + 12);
    for (int32_t code = 1; code <= 255; ++code) {
        std::copy(reinterpret_cast<const unsigned char*>(&code),
                  reinterpret_cast<const unsigned char*>(&code) + 4, bytes.begin() + 20 + code * 4);
    }
    for (size_t i = 24 + 255 * 4; i < bytes.size(); ++i) bytes[i] = (i * 7 % 5) == 0;
    return bytes;
}

void StartScreen(FuzzInput& in) {
    static const int kSizes[][2] = {{320, 240}, {1, 1}, {800, 480}, {17, 3}, {240, 320}};
    const auto& size = kSizes[in.Byte() % 5];
    vp_screen screen = {size[0], size[1], size[0], size[1], 32, 0};
    vp_fb_add("/dev/fb0", &screen);
    static const std::vector<unsigned char> font = MakeFont();
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

// Every argument is read in one fixed order before the call, so an input means the
// same sequence whichever compiler built the fuzzer or its regression run.
struct Arguments {
    int op, x, y, w, h, font, align;
    uint32_t colour;
    float percent;
    bool noText;
    std::string text;
};

Arguments Read(FuzzInput& in) {
    Arguments a;
    a.op = in.Byte() % 18;
    a.x = in.Int();
    a.y = in.Int();
    a.w = in.Int();
    a.h = in.Int();
    a.font = in.Int() % 3;
    a.align = in.Int();
    a.colour = in.Word();
    a.percent = in.Float();
    a.noText = (in.Byte() & 1) != 0;
    a.text = in.Text(300000);
    return a;
}

void Call(FuzzInput& in) {
    Arguments a = Read(in);
    const char* text = a.text.c_str();
    const char* lines[] = {text, "", nullptr};
    int w, h;
    switch (a.op) {
        case 0:
            InitCanvas(a.x, a.y, a.w, a.h);
            break;
        case 1:
            Update();
            break;
        case 2:
            Restore();
            break;
        case 3:
            Clear();
            break;
        case 4:
            WriteText(a.x, a.y, text, a.colour, a.font);
            break;
        case 5:
            WriteInvText(a.x, a.y, text, a.colour, a.font);
            break;
        case 6:
            WriteTextWithBackground(a.x, a.y, text, a.colour, ~a.colour, a.font);
            break;
        case 7:
            WriteAlignedTextWithBackground(a.x, a.y, text, a.colour, 0, a.font, a.align);
            break;
        case 8:
            getFontSize(a.font, &w, &h);
            getScreenSize(&w, nullptr);
            break;
        case 9:
            ConvertColours(a.w);
            break;
        case 10:
            InitDialog(a.x, a.y, a.w, a.h);
            break;
        case 11:
            ShowDialog(lines, 0, a.align);
            break;
        case 12:
            HideDialog();
            break;
        case 13:
            InitMenu(a.x, a.y);
            break;
        case 14:
            InitProgress(a.x, a.y, a.w, a.h);
            break;
        case 15:
            ShowProgress(a.noText ? nullptr : text, a.align, a.percent);
            break;
        case 16:
            UpdateProgress(a.noText ? nullptr : text, a.align, a.percent);
            break;
        case 17:
            HideProgress();
            break;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzInput in(data, size);
    StartScreen(in);
    for (int calls = 0; calls < 64 && !in.Empty(); ++calls) Call(in);
    Vantor::VantorCleanup();
    Vantor::VantorInit();
    return 0;
}
