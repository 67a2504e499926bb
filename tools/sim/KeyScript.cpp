// SPDX-License-Identifier: MIT
#include "KeyScript.h"

#include <linux/input-event-codes.h>

#include <cctype>
#include <cstdlib>
#include <map>
#include <sstream>
#include <stdexcept>

#include "vantor/KeypadMatrix.h"

namespace VantorSim {

namespace {

namespace KeypadMatrix = Vantor::KeypadMatrix;

// The keypad's device codes under the names of the key codes the library turns them into.
// left and right are aliases of up and down for horizontal menus.
const std::map<std::string, int> kNames = {
    {"up", KeypadMatrix::kUp},        {"left", KeypadMatrix::kUp},
    {"down", KeypadMatrix::kDown},    {"right", KeypadMatrix::kDown},
    {"ok", KeypadMatrix::kOk},        {"select", KeypadMatrix::kSelect},
    {"back", KeypadMatrix::kBack},    {"home", KeypadMatrix::kHome},
    {"cancel", KeypadMatrix::kCancel}};

// The same keys as three buttons and a keyboard send them.
const std::map<std::string, int> kCommonNames = {
    {"up", KEY_VOLUMEUP},    {"left", KEY_LEFT}, {"down", KEY_VOLUMEDOWN},
    {"right", KEY_RIGHT},    {"ok", KEY_POWER},  {"select", KEY_SPACE},
    {"back", KEY_BACKSPACE}, {"home", KEY_HOME}, {"cancel", KEY_ESC}};

std::string Lower(std::string text) {
    for (char& c : text) c = char(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

KeyStep ParseStep(const std::string& word, KeyCodes codes) {
    const std::string name = Lower(word);
    if (name == "none" || name == "-") return {KeyStep::Skip, 0, 0};
    if (name.rfind("pause:", 0) == 0) {
        char* end = nullptr;
        const double seconds = std::strtod(name.c_str() + 6, &end);
        if (*end != '\0' || !(seconds >= 0) || seconds > 3600) {
            throw std::invalid_argument("bad pause \"" + word + "\" (pause:SECONDS)");
        }
        return {KeyStep::Pause, 0, seconds};
    }
    const int named = KeyCodeOf(name, codes);
    if (named >= 0) return {KeyStep::Press, named, 0};
    char* end = nullptr;
    const long code = std::strtol(name.c_str(), &end, 10);
    if (name.empty() || *end != '\0' || code < 1 || code > 0x2FF) {
        throw std::invalid_argument("unknown key \"" + word +
                                    "\" (up, down, left, right, ok, select, back, home, "
                                    "cancel, none, pause:SECONDS or a device code)");
    }
    return {KeyStep::Press, int(code), 0};
}

}  // namespace

int KeyCodeOf(const std::string& name, KeyCodes codes) {
    const std::map<std::string, int>& names = codes == KeyCodes::Common ? kCommonNames : kNames;
    const auto found = names.find(Lower(name));
    return found == names.end() ? -1 : found->second;
}

std::vector<KeyStep> ParseKeyScript(const std::string& text, KeyCodes codes) {
    std::vector<KeyStep> steps;
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        line = line.substr(0, line.find('#'));
        for (char& c : line) {
            if (c == ',') c = ' ';
        }
        std::istringstream words(line);
        std::string word;
        while (words >> word) steps.push_back(ParseStep(word, codes));
    }
    return steps;
}

std::string EncodeKeyScript(const std::vector<KeyStep>& steps) {
    std::ostringstream out;
    out.precision(17);  // a pause must come back exactly as it was written
    for (const KeyStep& step : steps) {
        if (step.kind == KeyStep::Press) out << step.code << ' ';
        if (step.kind == KeyStep::Skip) out << "none ";
        if (step.kind == KeyStep::Pause) out << "pause:" << step.seconds << ' ';
    }
    return out.str();
}

std::vector<KeyStep> DecodeKeyScript(const std::string& encoded) {
    return ParseKeyScript(encoded);
}

}  // namespace VantorSim
