// SPDX-License-Identifier: MIT
// The screen paths through the C interface on the virtual framebuffer, and the memory
// floors they are judged by, all on the same screen memory.
#include <algorithm>
#include <cstring>
#include <vector>

#include "BenchScreen.h"
#include "Workload.h"
#include "vantor.h"

namespace VantorBench {

namespace {

const int kWindowX = 150;
const int kWindowY = 205;
const int kWindowWidth = 500;
const int kWindowHeight = 70;

// What an ideal repaint of a w x h canvas at the screen's top-left costs: fill the
// canvas, save the screen rows under it, copy the canvas onto them. With `copyOnly`,
// just one copy of the area's pixels onto the screen.
class Floor : public Workload {
  public:
    Floor(int w, int h, bool copyOnly)
        : width(w), height(h), onlyCopy(copyOnly), canvas(size_t(w) * h), saved(size_t(w) * h) {}
    void Run() override {
        uint32_t* screen = ScreenPixels();
        const size_t rowBytes = size_t(width) * sizeof(uint32_t);
        if (!onlyCopy) std::fill(canvas.begin(), canvas.end(), 0x000000u);
        for (int r = 0; r < height && !onlyCopy; ++r) {
            std::memcpy(&saved[size_t(r) * width], screen + size_t(r) * kScreenWidth, rowBytes);
        }
        for (int r = 0; r < height; ++r) {
            std::memcpy(screen + size_t(r) * kScreenWidth, &canvas[size_t(r) * width], rowBytes);
        }
    }

  private:
    int width;
    int height;
    bool onlyCopy;
    std::vector<uint32_t> canvas;
    std::vector<uint32_t> saved;
};

class UpdateScreen : public Workload {
  public:
    explicit UpdateScreen(bool withText) {
        InitCanvas(0, 0, kScreenWidth, kScreenHeight);
        const char line[] = "The quick brown fox jumps over the lazy dog 0123456789";
        for (int k = 0; withText && k < 30; ++k) WriteText(0, k * 16, line, 0xFFFFFF, 0);
    }
    void Run() override { Update(); }
};

// UpdateProgress without a text repaints only the bar's pixels.
class ProgressBarStep : public Workload {
  public:
    ProgressBarStep() {
        InitProgress(kWindowX, kWindowY, kWindowWidth, kWindowHeight);
        ShowProgress("Copying firmware", 1, 0.0f);
    }
    void Run() override {
        percent = percent >= 100.0f ? 0.0f : percent + 0.7f;
        UpdateProgress(nullptr, 1, percent);
    }

  private:
    float percent = 0.0f;
};

class Conversion : public Workload {
  public:
    Conversion() : rgb(size_t(kScreenWidth) * kScreenHeight * 3), rgba(rgb.size() / 3 * 4) {
        for (size_t i = 0; i < rgb.size(); ++i) rgb[i] = static_cast<unsigned char>(i * 13);
    }
    void Run() override { RGB_to_RGBA(rgb.data(), rgba.data(), static_cast<int>(rgb.size())); }

  private:
    std::vector<unsigned char> rgb;
    std::vector<unsigned char> rgba;
};

class CopyOut : public Workload {
  public:
    CopyOut() : from(size_t(kScreenWidth) * kScreenHeight), to(from.size()) {}
    void Run() override { std::memcpy(to.data(), from.data(), to.size() * sizeof(uint32_t)); }

  private:
    std::vector<uint32_t> from;
    std::vector<uint32_t> to;
};

}  // namespace

std::unique_ptr<Workload> MakeFloor(int width, int height) {
    return std::unique_ptr<Workload>(new Floor(width, height, false));
}

namespace {

template <typename T, typename... Args>
std::function<std::unique_ptr<Workload>()> Make(Args... args) {
    return [=]() -> std::unique_ptr<Workload> {
        if (!StartLibrary()) return nullptr;
        return std::unique_ptr<Workload>(new T(args...));
    };
}

const Register kFloorScreen("floor/screen", Make<Floor>(kScreenWidth, kScreenHeight, false));
const Register kEmpty("update/empty", Make<UpdateScreen>(false));
const Register kText("update/text", Make<UpdateScreen>(true));
const Register kFloorWindow("floor/window", Make<Floor>(kWindowWidth, kWindowHeight, true));
const Register kBar("progress/bar", Make<ProgressBarStep>());
const Register kFloorRgba("floor/rgba", Make<CopyOut>());
const Register kRgba("rgb_to_rgba", Make<Conversion>());

}  // namespace

}  // namespace VantorBench
