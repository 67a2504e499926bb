// SPDX-License-Identifier: MIT
// The display and keypad as one subcommand uses them: opened once, with the screen and
// font cell sizes at hand for laying out widgets that fit any panel.
#ifndef VANTOR_TOOL_SCREEN_H
#define VANTOR_TOOL_SCREEN_H

#include <string>

#include "ExitStatus.h"
#include "Values.h"

namespace VantorTool {

class Screen {
  public:
    // An empty device means the usual choice (DisplayChoice.h). Throws
    // CommandFailure(kExitNoDisplay) when no device can be used.
    explicit Screen(const std::string& device);

    // Throws CommandFailure(kExitNoKeypad) when there is no keypad to wait on.
    static void OpenKeypad();

    int width() const { return screenWidth; }
    int height() const { return screenHeight; }
    int cellWidth() const { return cellW; }
    int cellHeight() const { return cellH; }

    // The box --geometry gave, or else one of the given size in the middle of the
    // screen, shrunk to fit it.
    Box Place(const std::string& geometry, int boxWidth, int boxHeight) const;
    // The box of the progress window gauge and copy show: three quarters of the screen
    // wide, tall enough for a line of text above the library's bar.
    Box PlaceProgress(const std::string& geometry) const;

  private:
    int screenWidth = 0, screenHeight = 0, cellW = 8, cellH = 16;
};

// Maps a menu's or dialog's answer for a leaving key to the command's status.
ExitStatus StatusOfLeavingKey(int answer);

}  // namespace VantorTool

#endif
