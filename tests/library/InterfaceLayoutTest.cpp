// SPDX-License-Identifier: MIT
// Every pixel layout, padded rows and a panned page, through the C interface: the
// visible page must show what the usual 32-bit screen shows (each channel cut to the
// panel's bits), nothing outside the page may change, and what goes away gives back
// the screen's exact bytes.
#include "InterfaceFixture.h"
#include "vantor_platform.h"

namespace {

struct Field {
    unsigned offset, length;
};

struct Layout {
    const char* name;
    int layout, bits;
    Field red, green, blue;
};

const Layout kLayouts[] = {
    {"XRGB8888", VP_XRGB8888, 32, {16, 8}, {8, 8}, {0, 8}},
    {"XBGR8888", VP_XBGR8888, 32, {0, 8}, {8, 8}, {16, 8}},
    {"RGBX8888", VP_RGBX8888, 32, {24, 8}, {16, 8}, {8, 8}},
    {"BGRX8888", VP_BGRX8888, 32, {8, 8}, {16, 8}, {24, 8}},
    {"RGB888", VP_RGB888, 24, {16, 8}, {8, 8}, {0, 8}},
    {"BGR888", VP_BGR888, 24, {0, 8}, {8, 8}, {16, 8}},
    {"RGB565", VP_RGB565, 16, {11, 5}, {5, 6}, {0, 5}},
    {"BGR565", VP_BGR565, 16, {0, 5}, {5, 6}, {11, 5}},
    {"no bitfields", VP_NO_FIELDS, 32, {16, 8}, {8, 8}, {0, 8}},
};

// The page is 320 x 240 at (6, 250) in a 330 x 500 area with 12 bytes of row padding.
const int kVirtualWidth = 330, kVirtualHeight = 500, kOffsetX = 6, kOffsetY = 250;

// A colour as such a panel stores it: each channel cut to its top bits.
uint32_t Encode(uint32_t colour, const Layout& l) {
    const auto put = [colour](int from, Field f) {
        return ((colour >> from & 0xFF) >> (8 - f.length)) << f.offset;
    };
    return put(16, l.red) | put(8, l.green) | put(0, l.blue);
}

uint32_t Raw(const uint8_t* pixel, size_t bytes) {
    uint32_t raw = 0;
    for (size_t i = 0; i < bytes; ++i) raw |= uint32_t(pixel[i]) << (8 * i);
    return raw;
}

class Layouts : public Interface {
  protected:
    void UseLayout(const Layout& l) {
        bytes = l.bits / 8;
        line = kVirtualWidth * bytes + 12;
        vp_screen screen = {kWidth,    kHeight,  kVirtualWidth, kVirtualHeight, l.bits,
                            int(line), l.layout, kOffsetX,      kOffsetY};
        ASSERT_EQ(0, vp_fb_add("/dev/fb0", &screen));
        uint8_t* memory = Memory();
        for (size_t k = 0; k < line * kVirtualHeight; ++k) memory[k] = uint8_t(k * 37 + 11);
    }

    uint8_t* Memory() const { return reinterpret_cast<uint8_t*>(vp_fb_pixels("/dev/fb0")); }
    std::vector<uint8_t> Bytes() const {
        return std::vector<uint8_t>(Memory(), Memory() + line * kVirtualHeight);
    }

    size_t bytes = 4, line = 0;
};

// A canvas hanging off the left and top edges with text in several colours, and a
// progress window over it.
void DrawScene() {
    ASSERT_NE(nullptr, InitFramebuffer("/dev/fb0"));
    ASSERT_EQ(0, InitCanvas(-4, -6, 200, 100));
    WriteText(0, 0, "Panel 0123", 0xFF8040, 0);
    WriteTextWithBackground(10, 30, "layouts", 0x13579B, 0xECA864, 1);
    WriteInvText(20, 60, "ok", 0x7F7F7F, 0);
    ASSERT_EQ(0, Update());
}

bool Covered(int x, int y) {
    const bool canvas = x < 196 && y < 94;
    const bool window = x >= 150 && y >= 90 && y < 150;
    return canvas || window;
}

void ShowWindow() {
    ASSERT_EQ(0, InitProgress(150, 90, 200, 60));  // partly past the right edge
    ASSERT_EQ(0, ShowProgress("Copying", 1, 40.0f));
}

}  // namespace

TEST_F(Layouts, EveryLayoutShowsTheSamePictureAndGivesBackItsBytes) {
    DrawScene();
    ShowWindow();
    const std::vector<uint32_t> reference = Snapshot();

    for (const Layout& l : kLayouts) {
        SCOPED_TRACE(l.name);
        UseLayout(l);
        const std::vector<uint8_t> untouched = Bytes();
        DrawScene();
        int width = 0, height = 0;
        EXPECT_EQ(0, getScreenSize(&width, &height));
        EXPECT_EQ(kWidth * 1000 + kHeight, width * 1000 + height);
        EXPECT_EQ(1, vp_fb_pan_count("/dev/fb0"));  // once for the whole Update
        const std::vector<uint8_t> beforeWindow = Bytes();
        ShowWindow();

        // The canvas and the window show the reference picture; every other byte of the
        // memory (the rest of the page, padding, the hidden area) is as it was.
        const std::vector<uint8_t> now = Bytes();
        size_t wrong = 0, scribbled = 0;
        for (size_t k = 0; k < now.size(); ++k) {
            const int x = int((k % line) / bytes) - kOffsetX, y = int(k / line) - kOffsetY;
            const bool onPage =
                k % line < kVirtualWidth * bytes && x >= 0 && x < kWidth && y >= 0 && y < kHeight;
            if (onPage && Covered(x, y)) {
                const uint32_t shown = Raw(&now[k], bytes) & Encode(0xFFFFFF, l);
                wrong += k % bytes == 0 && shown != Encode(reference[size_t(y) * kWidth + x], l);
            } else {
                scribbled += now[k] != untouched[k];
            }
        }
        EXPECT_EQ(0u, wrong);
        EXPECT_EQ(0u, scribbled);

        EXPECT_EQ(0, HideProgress());
        EXPECT_TRUE(Bytes() == beforeWindow);
        EXPECT_EQ(0, Restore());
        EXPECT_TRUE(Bytes() == untouched);
        // Each Update saves what it covers, so Restore goes back to before the last one.
        ASSERT_EQ(0, Update());
        const std::vector<uint8_t> painted = Bytes();
        ASSERT_EQ(0, Update());
        EXPECT_EQ(0, Restore());
        EXPECT_TRUE(Bytes() == painted);
    }
}
