// How long the drawing paths take: redrawing a screenful of text, pushing a canvas to
// the screen, and stepping a menu. Run: build/bench/vantor_bench
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "vantor/AsciiText.h"
#include "vantor/BitmapFont.h"
#include "vantor/Canvas.h"
#include "vantor/ProgressBar.h"

using namespace Vantor;

namespace {

// A 8x16 font of the printable ASCII range, written once per run.
CBitmapFont& Font() {
    static std::string path = [] {
        std::string file = "/tmp/vantor-bench-" + std::to_string(getpid()) + ".tf";
        std::vector<unsigned char> bytes(24, 0);
        std::memcpy(bytes.data(), "tinyfont", 9);
        const int32_t header[] = {95, 16, 8};
        std::memcpy(bytes.data() + 12, header, sizeof(header));
        for (int32_t code = 32; code < 127; ++code) {
            bytes.insert(bytes.end(), reinterpret_cast<unsigned char*>(&code),
                         reinterpret_cast<unsigned char*>(&code) + 4);
        }
        for (int i = 0; i < 95 * 16 * 8; ++i) bytes.push_back((i * 7) % 3 == 0);
        std::ofstream(file, std::ios::binary)
            .write(reinterpret_cast<char*>(bytes.data()), bytes.size());
        return file;
    }();
    static CBitmapFont font(path.c_str());
    return font;
}

void TextScreenRefresh(benchmark::State& state) {
    CCanvas canvas(0, 0, 800, 480);
    for (int line = 0; line < 30; ++line) {
        canvas.objects.push_back(
            new CAsciiText("The quick brown fox jumps over the lazy dog 0123456789", Font(),
                           CPoint(4, line * 16)));
    }
    for (auto _ : state) {
        canvas.Refresh();
        benchmark::DoNotOptimize(canvas.pPixels[0]);
    }
    state.SetItemsProcessed(state.iterations() * 30 * 54);  // glyphs drawn
}
BENCHMARK(TextScreenRefresh)->Unit(benchmark::kMicrosecond);

void PaintFullScreen(benchmark::State& state) {
    std::vector<uint32_t> screen(800 * 480);
    CCanvas canvas(0, 0, 800, 480);
    for (auto _ : state) {
        canvas.SaveBackground(screen.data(), 800, 480);
        canvas.Paint(screen.data(), 800, 480);
        benchmark::DoNotOptimize(screen[0]);
    }
    state.SetBytesProcessed(state.iterations() * 2 * 800 * 480 * 4);
}
BENCHMARK(PaintFullScreen)->Unit(benchmark::kMicrosecond);

void ProgressBarRedraw(benchmark::State& state) {
    CCanvas canvas(0, 0, 500, 70);
    CProgressBar bar(5, 50, 490, 15);
    float percent = 0.0f;
    for (auto _ : state) {
        bar.setProgress(percent);
        bar.Draw(canvas);
        percent = percent >= 100.0f ? 0.0f : percent + 1.0f;
    }
}
BENCHMARK(ProgressBarRedraw)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
