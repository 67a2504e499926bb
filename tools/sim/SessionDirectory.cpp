// SPDX-License-Identifier: MIT
#include "SessionDirectory.h"

#include <fcntl.h>
#include <ftw.h>
#include <linux/input.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "KeyRecords.h"
#include "SessionState.h"

namespace VantorSim {

namespace {

int RemoveEntry(const char* entry, const struct stat*, int, struct FTW*) {
    remove(entry);
    return 0;
}

bool MakeDirectories(const std::string& root, const std::string& inside) {
    for (size_t slash = 1; slash != std::string::npos;) {
        slash = inside.find('/', slash + 1);
        const std::string dir = root + inside.substr(0, slash);
        if (mkdir(dir.c_str(), 0755) != 0 && access(dir.c_str(), F_OK) != 0) return false;
    }
    return true;
}

bool WriteFile(const std::string& file, const std::string& text) {
    FILE* out = std::fopen(file.c_str(), "w");
    if (out == nullptr) return false;
    const bool written = std::fputs(text.c_str(), out) >= 0;
    return std::fclose(out) == 0 && written;
}

}  // namespace

const char SessionDirectory::kKeypadName[] = "tca8418 keypad (vantor-sim)";

bool SessionDirectory::Create(const std::string& keypadName) {
    const char* tmp = std::getenv("TMPDIR");
    std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/vantor-platform-XXXXXX";
    if (mkdtemp(&pattern[0]) == nullptr) return false;
    path = pattern;
    if (MakeKeypad(keypadName) && SessionState(StatePath()).Create()) return true;
    Remove();
    return false;
}

// The same layout the platform layer gives a keypad of its own: a FIFO as the event
// node and the name the library looks for (or the one the program is told to look for).
bool SessionDirectory::MakeKeypad(const std::string& name) {
    const std::string index = std::to_string(kKeypad);
    const std::string node = path + "/dev/input/event" + index;
    const std::string names = "/sys/class/input/input" + index;
    if (!MakeDirectories(path, "/dev/input") || !MakeDirectories(path, names)) return false;
    if (!WriteFile(path + names + "/name", name + "\n")) return false;
    if (mkfifo(node.c_str(), 0644) != 0) return false;
    keypadNode = Vantor::UniqueFd::Open(node.c_str(), O_RDWR | O_NONBLOCK);
    return keypadNode.IsOpen();
}

// A typed key arrives as the TCA8418 driver reports a press, written at once so a
// reader never sees a press cut in two.
bool SessionDirectory::QueueKey(int code) {
    const VantorPlatform::KeyRecords press = VantorPlatform::MakeKeyRecords(code, 1);
    return write(keypadNode.Get(), &press, sizeof(press)) == ssize_t(sizeof(press));
}

void SessionDirectory::Remove() {
    keypadNode.Reset();
    if (!path.empty()) nftw(path.c_str(), RemoveEntry, 16, FTW_DEPTH | FTW_PHYS);
    path.clear();
}

}  // namespace VantorSim
