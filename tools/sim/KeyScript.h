// SPDX-License-Identifier: MIT
#ifndef VANTOR_SIM_KEYSCRIPT_H
#define VANTOR_SIM_KEYSCRIPT_H

#include <string>
#include <vector>

namespace VantorSim {

// One step of a key script: press a key, let one wait pass without a key, or pause.
struct KeyStep {
    enum Kind { Press, Skip, Pause } kind;
    int code;        // device key code, for Press
    double seconds;  // for Pause
    bool operator==(const KeyStep& other) const {
        return kind == other.kind && code == other.code && seconds == other.seconds;
    }
};

// Which device codes the key names stand for: the TCA8418 keypad's, or the common ones
// of gpio-keys buttons and keyboards (up and down are the volume keys, ok is power,
// left and right the arrows, select Space, back Backspace, cancel Esc, home Home).
enum class KeyCodes { TCA8418, Common };

// Parses "down, down, ok, none, pause:0.5, 149": the seven keypad keys by name (up,
// down, left, right, ok, select, back, home, cancel), device codes as numbers, "none"
// for a wait that gets no key, "pause:SECONDS". Blanks, commas and new lines separate
// steps; "#" starts a comment up to the end of the line. Throws std::invalid_argument
// naming the bad step.
std::vector<KeyStep> ParseKeyScript(const std::string& text, KeyCodes codes = KeyCodes::TCA8418);

// The same steps in the compact form handed to the program's environment, and back.
std::string EncodeKeyScript(const std::vector<KeyStep>& steps);
std::vector<KeyStep> DecodeKeyScript(const std::string& encoded);

// The device code of a key name, or -1.
int KeyCodeOf(const std::string& name, KeyCodes codes = KeyCodes::TCA8418);

}  // namespace VantorSim

#endif
