// SPDX-License-Identifier: MIT
#ifndef VANTOR_SIM_LIVEVIEW_H
#define VANTOR_SIM_LIVEVIEW_H

#include <cstdint>
#include <string>

namespace VantorSim {

// The screen drawn on a terminal for the person trying a program: upper half blocks in
// 24-bit colour, two screen rows per text line, shrunk by averaging to fit the
// terminal. Each picture is printed below the program's own output, so the newest one
// is always at the bottom, next to what the program printed.
class LiveView {
  public:
    explicit LiveView(int fd) : fd(fd) {}
    // The picture of a screen of 0x00RRGGBB pixels (rows of stride pixels) that fits in
    // columns x lines character cells.
    static std::string Render(const uint32_t* pixels, int width, int height, int stride,
                              int columns, int lines);
    // Renders to fit the terminal behind fd and writes it there under a caption line.
    void Show(const std::string& caption, const uint32_t* pixels, int width, int height,
              int stride) const;

  private:
    int fd;
};

}  // namespace VantorSim

#endif
