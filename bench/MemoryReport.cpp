// SPDX-License-Identifier: MIT
// The library's resident memory on an 800x480 screen, step by step as a host sets up a
// full-screen canvas of text, a dialog, a menu and a progress window. The heap (RssAnon)
// and file-backed pages (RssFile: the mapped screen, here the platform layer's file) are
// shown apart, as growth since the library was loaded. Run: build/bench/vantor_memory
#include <cstdio>
#include <cstring>

#include "BenchScreen.h"
#include "vantor.h"
#include "vantor_platform.h"

namespace {

long StatusKiB(const char* field) {
    FILE* status = std::fopen("/proc/self/status", "r");
    char line[256];
    long value = -1;
    const size_t length = std::strlen(field);
    while (status != nullptr && std::fgets(line, sizeof line, status) != nullptr) {
        if (std::strncmp(line, field, length) == 0) std::sscanf(line + length, ": %ld", &value);
    }
    if (status != nullptr) std::fclose(status);
    return value;
}

long heapStart = 0;
long fileStart = 0;

void Report(const char* step) {
    std::printf("%-44s heap +%5ld KiB   file-backed +%5ld KiB\n", step,
                StatusKiB("RssAnon") - heapStart, StatusKiB("RssFile") - fileStart);
}

void ShowText() {
    InitCanvas(0, 0, VantorBench::kScreenWidth, VantorBench::kScreenHeight);
    for (int k = 0; k < 30; ++k) {
        WriteText(0, k * 16, "The quick brown fox jumps over the lazy dog 0123456789", 0xFFFFFF, 0);
    }
    Update();
}

void ShowMenuOnce() {
    const char* entries[] = {"Network",         "Display", "Keypad", "Storage",
                             "Update firmware", "Logs",    "Date",   "Reboot",
                             "Power off",       "About",   nullptr};
    vp_input_add(0, "tca8418 keypad");
    InitKeypad();
    vp_input_script(0, "149");  // the "choose" key: the menu ends at once
    InitMenu(300, 100);
    ShowMenu(entries, 0, 1);
}

}  // namespace

int main() {
    heapStart = StatusKiB("RssAnon");
    fileStart = StatusKiB("RssFile");
    Report("library loaded");
    if (!VantorBench::StartLibrary()) return 1;
    Report("InitFramebuffer (screen mapped, two fonts)");
    ShowText();
    Report("+ 800x480 canvas, 30 lines of text, Update");
    const char* lines[] = {"Firmware update", "Do not switch off", nullptr};
    InitDialog(200, 140, 400, 200);
    ShowDialog(lines, 0, 1);
    Report("+ 400x200 dialog shown");
    ShowMenuOnce();
    Report("+ 10-entry menu shown");
    InitProgress(150, 205, 500, 70);
    ShowProgress("Copying", 1, 40.0f);
    Report("+ 500x70 progress window shown");
    return 0;
}
