// SPDX-License-Identifier: MIT
#include "LiveView.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace VantorSim {

namespace {

struct Box {
    const uint32_t* pixels;
    int stride;
    double xStep, yStep;
};

// The average colour of the screen pixels behind one view pixel.
uint32_t Average(const Box& box, int column, int row) {
    const int x0 = int(column * box.xStep), x1 = std::max(x0 + 1, int((column + 1) * box.xStep));
    const int y0 = int(row * box.yStep), y1 = std::max(y0 + 1, int((row + 1) * box.yStep));
    unsigned long long red = 0, green = 0, blue = 0, count = 0;
    for (int y = y0; y < y1; ++y) {
        const uint32_t* line = box.pixels + size_t(y) * box.stride;
        for (int x = x0; x < x1; ++x, ++count) {
            red += line[x] >> 16 & 0xFF;
            green += line[x] >> 8 & 0xFF;
            blue += line[x] & 0xFF;
        }
    }
    return uint32_t(red / count) << 16 | uint32_t(green / count) << 8 | uint32_t(blue / count);
}

void AddColour(std::string& out, int layer, uint32_t colour) {
    char code[32];
    std::snprintf(code, sizeof(code), "\033[%d;2;%u;%u;%um", layer, colour >> 16 & 0xFF,
                  colour >> 8 & 0xFF, colour & 0xFF);
    out += code;
}

}  // namespace

std::string LiveView::Render(const uint32_t* pixels, int width, int height, int stride, int columns,
                             int lines) {
    if (pixels == nullptr || width < 1 || height < 1 || columns < 1 || lines < 1) return "";
    // Square view pixels: a text cell is about twice as tall as it is wide and holds two.
    const double scale = std::max({1.0, double(width) / columns, double(height) / (2.0 * lines)});
    const int viewWidth = std::max(1, int(width / scale));
    const int viewHeight = std::max(1, int(height / scale));
    const Box box = {pixels, stride, double(width) / viewWidth, double(height) / viewHeight};
    std::string out;
    for (int row = 0; row < viewHeight; row += 2) {
        for (int column = 0; column < viewWidth; ++column) {
            AddColour(out, 38, Average(box, column, row));
            AddColour(out, 48, row + 1 < viewHeight ? Average(box, column, row + 1) : 0);
            out += "\u2580";
        }
        out += "\033[0m\n";
    }
    return out;
}

void LiveView::Show(const std::string& caption, const uint32_t* pixels, int width, int height,
                    int stride) const {
    winsize size = {};
    if (ioctl(fd, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) {
        size.ws_col = 80;
        size.ws_row = 24;
    }
    // Besides the caption, a line is kept free for the program's output below the picture.
    const std::string picture =
        caption + "\n" +
        Render(pixels, width, height, stride, size.ws_col, std::max(1, size.ws_row - 2));
    for (size_t done = 0; done < picture.size();) {
        const ssize_t wrote = write(fd, picture.data() + done, picture.size() - done);
        if (wrote <= 0) return;
        done += size_t(wrote);
    }
}

}  // namespace VantorSim
