// SPDX-License-Identifier: MIT
#include "InterfaceFixture.h"

#include <cstdio>

#include "TestSupport.h"
#include "vantor/Context.h"
#include "vantor_platform.h"

namespace {

const char* const kDevice = "/dev/fb0";

// Every code but 127, so that a test can write a character the font lacks.
std::vector<int> FontCodes() {
    std::vector<int> codes;
    for (int code = 1; code < 256; ++code) {
        if (code != 127) codes.push_back(code);
    }
    return codes;
}

void AddFont(const char* name) {
    static const std::vector<unsigned char> bytes = VantorTest::FontBytes(8, 16, FontCodes());
    vp_file_add((std::string("/usr/share/fonts/vantor/") + name).c_str(), bytes.data(),
                bytes.size());
}

}  // namespace

void Interface::SetUp() {
    vp_reset();
    // A test never waits for keys it did not script: it ends instead of hanging.
    vp_set_exit_when_exhausted(1);
    Vantor::VantorCleanup();
    Vantor::VantorInit();
    setKeyDevices(nullptr);  // the key choice outlives the state record
    resetKeyCodes(VANTOR_KEYCODES_TCA8418);
    const vp_screen screen = {kWidth, kHeight, kWidth, kHeight, 32, 0};
    ASSERT_EQ(0, vp_fb_add(kDevice, &screen));
    AddFont("lr.tf");
    AddFont("lb.tf");
}

void Interface::TearDown() {
    Vantor::VantorCleanup();
    Vantor::VantorInit();
    vp_reset();
}

uint32_t Interface::Pixel(int x, int y) const {
    return vp_fb_pixels(kDevice)[y * kWidth + x];
}

void Interface::FillScreen(uint32_t colour) {
    uint32_t* pixels = vp_fb_pixels(kDevice);
    std::fill(pixels, pixels + kWidth * kHeight, colour);
}

std::vector<uint32_t> Interface::Snapshot() const {
    const uint32_t* pixels = vp_fb_pixels(kDevice);
    return std::vector<uint32_t>(pixels, pixels + kWidth * kHeight);
}

bool Interface::CellShows(int code, int x, int y, uint32_t ink, uint32_t paper) const {
    for (int r = 0; r < 16; ++r) {
        for (int c = 0; c < 8; ++c) {
            if (Pixel(x + c, y + r) != (VantorTest::GlyphBit(code, r, c) ? ink : paper))
                return false;
        }
    }
    return true;
}

void Interface::AddKeypad(int index, const char* name) {
    ASSERT_EQ(0, vp_input_add(index, name));
}

void Interface::Script(const char* codes, int index) {
    ASSERT_EQ(0, vp_input_script(index, codes));
}

void Interface::Script(const std::vector<int>& codes, int index) {
    std::string text;
    for (int code : codes) text += (text.empty() ? "" : ", ") + std::to_string(code);
    Script(text.c_str(), index);
}

void Interface::Press(int code, int index, int value) {
    ASSERT_EQ(0, vp_input_event(index, 1, code, value));
}

std::string Interface::OutputOf(const std::function<void()>& call) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    call();
    std::fflush(stdout);
    const std::string out = testing::internal::GetCapturedStdout();
    return out + testing::internal::GetCapturedStderr();
}
