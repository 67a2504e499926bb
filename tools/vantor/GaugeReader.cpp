// SPDX-License-Identifier: MIT
#include "GaugeReader.h"

#include "Values.h"

namespace VantorTool {

namespace {

std::string Trim(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

}  // namespace

bool GaugeReader::Feed(const std::string& raw, Step& step) {
    const std::string line = Trim(raw);
    if (line == "XXX") {
        inBlock = !inBlock;
        expectPercent = inBlock;
        if (inBlock) {
            pending = Step();
            return false;
        }
        step = pending;
        return true;
    }
    if (!inBlock) {
        step = Step();
        step.moves = ReadDecimal(line, step.percent);
        return step.moves;
    }
    if (expectPercent) {
        expectPercent = false;
        if (ReadDecimal(line, pending.percent)) {
            pending.moves = true;
            return false;
        }
    }
    // The window shows one line, so the block's lines are joined by blanks.
    if (pending.hasText) pending.text += ' ';
    pending.text += line;
    pending.hasText = true;
    return false;
}

bool GaugeReader::Finish(Step& step) {
    if (!inBlock || (!pending.moves && !pending.hasText)) return false;
    inBlock = false;
    step = pending;
    return true;
}

}  // namespace VantorTool
