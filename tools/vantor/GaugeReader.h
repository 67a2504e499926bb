// SPDX-License-Identifier: MIT
// The stdin protocol of a progress gauge, as dialog --gauge reads it: a line holding a
// number moves the bar; a block "XXX", a percentage, text lines, "XXX" sets the
// percentage and the text together. Other lines are ignored.
#ifndef VANTOR_TOOL_GAUGE_READER_H
#define VANTOR_TOOL_GAUGE_READER_H

#include <string>

namespace VantorTool {

class GaugeReader {
  public:
    struct Step {
        bool moves = false;  // percent is new
        float percent = 0;
        bool hasText = false;  // text is new
        std::string text;
    };

    // Takes one input line; true when it completes a step for the window.
    bool Feed(const std::string& line, Step& step);
    // At the end of input: true when an unfinished block still has something to show.
    bool Finish(Step& step);

  private:
    bool inBlock = false;
    bool expectPercent = false;
    Step pending;
};

}  // namespace VantorTool

#endif
