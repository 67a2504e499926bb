// SPDX-License-Identifier: MIT
#ifndef VANTOR_PLATFORM_VIRTUALPATHS_H
#define VANTOR_PLATFORM_VIRTUALPATHS_H

#include <atomic>
#include <map>
#include <string>

#include "PrivateRoot.h"

namespace VantorPlatform {

// Decides which paths this layer serves and where each one really lives: mapped
// directories in their host directory, the device and font prefixes in the private root.
// Relative paths are never virtual.
class VirtualPaths {
  public:
    explicit VirtualPaths(PrivateRoot& root) : root(root) {}

    // Cheap and lock-free, for the interposed calls: false means "certainly not ours".
    static bool MayBeVirtual(const char* path);
    // The real path behind a virtual one; false for paths that are not ours.
    bool Redirect(const char* path, std::string& real) const;
    void Map(const std::string& virtualDir, const std::string& hostDir);
    void Clear();

  private:
    static bool UnderPrefix(const char* path);
    bool UnderMapping(const std::string& path, std::string& real) const;

    PrivateRoot& root;
    std::map<std::string, std::string> mappings;  // virtual directory -> host directory
    static std::atomic<int> mappingCount;
};

}  // namespace VantorPlatform

#endif
