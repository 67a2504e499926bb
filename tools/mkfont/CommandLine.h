// SPDX-License-Identifier: MIT
#ifndef VANTOR_MKFONT_COMMANDLINE_H
#define VANTOR_MKFONT_COMMANDLINE_H

#include <string>

namespace VantorFont {

// What the user asked for. Parsing checks every value, so the commands can trust it.
class CommandLine {
  public:
    enum class Mode { Convert, Show, Sheet, Help };

    static CommandLine Parse(int argc, const char* const* argv);  // throws Refusal
    static const char* Usage();

    Mode mode = Mode::Convert;
    std::string source;
    std::string output;
    std::string boldSource;  // --bold: the family's bold face, made in the same run
    std::string boldOutput;
    std::string codes = "1-255";
    std::string codePage = "ISO-8859-1";
    int width = 0;  // 0: the font's own
    int height = 0;
    std::string font;       // for --show and --sheet
    std::string showCodes;  // empty: every code the font holds
    int scale = 2;

  private:
    void Take(const std::string& option, int& i, int argc, const char* const* argv);
    void SetMode(Mode wanted, const std::string& option);
    void ParseSize(const std::string& text);
    void Check() const;
};

}  // namespace VantorFont

#endif
