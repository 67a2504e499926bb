// SPDX-License-Identifier: MIT
#include "VirtualPaths.h"

#include <cstring>

namespace VantorPlatform {

namespace {

// Directories the library reaches, whole: the directory itself and all below it.
const char* const kVirtualDirectories[] = {"/dev/dri", "/dev/input", "/sys/class/input",
                                           "/usr/share/fonts/vantor"};
// Framebuffer devices are siblings of real devices in /dev, so only their names are ours.
const char kFramebufferPrefix[] = "/dev/fb";
// The console alone of the terminals: the host's must never be touched from a test.
const char kConsole[] = "/dev/tty0";

bool IsWithin(const char* path, const char* dir, size_t length) {
    return std::strncmp(path, dir, length) == 0 && (path[length] == '\0' || path[length] == '/');
}

}  // namespace

std::atomic<int> VirtualPaths::mappingCount{0};

bool VirtualPaths::MayBeVirtual(const char* path) {
    if (path == nullptr || path[0] != '/') return false;
    return mappingCount.load(std::memory_order_relaxed) > 0 || UnderPrefix(path);
}

bool VirtualPaths::UnderPrefix(const char* path) {
    if (std::strncmp(path, kFramebufferPrefix, sizeof(kFramebufferPrefix) - 1) == 0) return true;
    if (std::strcmp(path, kConsole) == 0) return true;
    for (const char* dir : kVirtualDirectories) {
        if (IsWithin(path, dir, std::strlen(dir))) return true;
    }
    return false;
}

bool VirtualPaths::Redirect(const char* path, std::string& real) const {
    if (!MayBeVirtual(path)) return false;
    if (UnderMapping(path, real)) return true;
    if (!UnderPrefix(path)) return false;
    real = root.Inside(path);
    return true;
}

// The longest mapped directory wins, so a mapping may sit inside another one.
bool VirtualPaths::UnderMapping(const std::string& path, std::string& real) const {
    const std::string* best = nullptr;
    for (const auto& [virtualDir, hostDir] : mappings) {
        if (!IsWithin(path.c_str(), virtualDir.c_str(), virtualDir.size())) continue;
        if (best == nullptr || virtualDir.size() > best->size()) best = &virtualDir;
    }
    if (best == nullptr) return false;
    real = mappings.at(*best) + path.substr(best->size());
    return true;
}

void VirtualPaths::Map(const std::string& virtualDir, const std::string& hostDir) {
    std::string dir = virtualDir;
    while (dir.size() > 1 && dir.back() == '/') dir.pop_back();
    mappings[dir] = hostDir;
    mappingCount.store(int(mappings.size()), std::memory_order_relaxed);
}

void VirtualPaths::Clear() {
    mappings.clear();
    mappingCount.store(0, std::memory_order_relaxed);
}

}  // namespace VantorPlatform
