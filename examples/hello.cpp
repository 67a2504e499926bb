// SPDX-License-Identifier: MIT
// hello - the classes used directly from C++: a canvas with two lines of text and a
// progress bar, pushed onto the screen by the framebuffer.
//
//   hello [DEVICE]      (default /dev/fb0)
#include <vantor/Vantor.h>
#include <cstdio>
#include <memory>
#include <stdexcept>

using namespace Vantor;

int main(int argc, char** argv) {
    try {
        CFramebuffer framebuffer(argc > 1 ? argv[1] : "/dev/fb0");
        if (framebuffer.pScreen == nullptr) return 1;  // the reason is on stdout

        std::unique_ptr<CCanvas> canvas(framebuffer.CreateCanvas(20, 20, 360, 120));
        CRGBA24 amber(0xFF, 0xB0, 0x00);
        canvas->objects.push_back(
            new CAsciiText("Hello from C++", *framebuffer.pFontBold, CPoint(10, 10), amber));
        canvas->objects.push_back(new CAsciiText("The canvas owns these objects",
                                                 *framebuffer.pFontRegular, CPoint(10, 40)));
        CProgressBar* bar = new CProgressBar(10, 80, 340, 15);
        bar->setProgress(42.0f);
        canvas->objects.push_back(bar);
        framebuffer.Refresh(*canvas);
        return 0;
    } catch (const std::exception& error) {  // a font that cannot be loaded
        std::fprintf(stderr, "hello: %s\n", error.what());
        return 1;
    }
}
