// SPDX-License-Identifier: MIT
#ifndef VANTOR_PLATFORM_PRIVATEROOT_H
#define VANTOR_PLATFORM_PRIVATEROOT_H

#include <sys/types.h>

#include <string>

namespace VantorPlatform {

// The private directory that holds this process's virtual files, so that reads, maps
// and waits on them are the kernel's own. It is made on first use under $TMPDIR (or
// /tmp) and removed when the process that made it exits; a forked child shares it and
// leaves it alone. A root attached to a shared directory belongs to whoever made it and
// is never emptied or removed from here.
class PrivateRoot {
  public:
    const std::string& Path();
    // Uses an existing directory from now on; one this process made is removed.
    bool Attach(const std::string& dir);
    bool IsShared() const { return shared; }
    std::string Inside(const std::string& virtualPath) { return Path() + virtualPath; }
    // Creates the directories between the root and a file inside it.
    void MakeParents(const std::string& realPath);
    // Empties it, keeping the directory itself.
    void Clear();
    // For a process that ends without exit handlers: removes it if this process made it.
    void RemoveIfOurs();

  private:
    std::string path;
    pid_t owner = 0;
    bool shared = false;
};

}  // namespace VantorPlatform

#endif
