// SPDX-License-Identifier: MIT
#include "PrivateRoot.h"

#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "RealCalls.h"

namespace VantorPlatform {

namespace {

// Only one root exists per process; the exit handler reaches it through this.
PrivateRoot* removedAtExit = nullptr;

int RemoveEntry(const char* path, const struct stat*, int, struct FTW* walk) {
    if (walk->level > 0) remove(path);
    return 0;
}

int RemoveEntryAndTop(const char* path, const struct stat*, int, struct FTW*) {
    remove(path);
    return 0;
}

}  // namespace

const std::string& PrivateRoot::Path() {
    if (!path.empty()) return path;
    const char* tmp = std::getenv("TMPDIR");
    std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/vantor-platform-XXXXXX";
    if (mkdtemp(&pattern[0]) == nullptr) {
        std::perror("vantor-platform: cannot make its private directory");
        std::abort();
    }
    path = pattern;
    owner = getpid();
    if (removedAtExit == nullptr) {
        removedAtExit = this;
        std::atexit([] { removedAtExit->RemoveIfOurs(); });
    }
    return path;
}

bool PrivateRoot::Attach(const std::string& dir) {
    struct stat status;
    if (RealCalls::Stat(dir.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return false;
    RemoveIfOurs();
    path = dir;
    owner = 0;
    shared = true;
    return true;
}

void PrivateRoot::MakeParents(const std::string& realPath) {
    // A mapped directory's files live in the host's tree, which is not ours to shape.
    if (realPath.compare(0, Path().size() + 1, Path() + "/") != 0) return;
    for (size_t slash = Path().size() + 1; (slash = realPath.find('/', slash)) != std::string::npos;
         ++slash) {
        mkdir(realPath.substr(0, slash).c_str(), 0755);
    }
}

void PrivateRoot::Clear() {
    if (!path.empty() && !shared) nftw(path.c_str(), RemoveEntry, 16, FTW_DEPTH | FTW_PHYS);
}

void PrivateRoot::RemoveIfOurs() {
    if (path.empty() || owner != getpid()) return;
    nftw(path.c_str(), RemoveEntryAndTop, 16, FTW_DEPTH | FTW_PHYS);
    // The path stays: anything opened after this finds nothing rather than a new root
    // that nobody would remove.
    owner = 0;
}

}  // namespace VantorPlatform
