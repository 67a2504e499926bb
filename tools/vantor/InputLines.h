// SPDX-License-Identifier: MIT
// Lines from a descriptor, each cut to a bounded length, so that a writer that never
// sends a newline cannot make the reader grow without end.
#ifndef VANTOR_TOOL_INPUT_LINES_H
#define VANTOR_TOOL_INPUT_LINES_H

#include <cstddef>
#include <string>

namespace VantorTool {

class InputLines {
  public:
    InputLines(int fd, size_t longest);
    // The next line without its newline, its first `longest` bytes only; false at the
    // end of the input or on a read error.
    bool Next(std::string& line);

  private:
    bool Fill();

    int fd;
    size_t longest;
    char buffer[65536];
    size_t start = 0, end = 0;
    bool ended = false;
};

}  // namespace VantorTool

#endif
