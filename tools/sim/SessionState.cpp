// SPDX-License-Identifier: MIT
#include "SessionState.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace VantorSim {

namespace {

// Closes the file, which also drops its lock, on every way out.
class LockedFile {
  public:
    explicit LockedFile(const std::string& path) : fd(open(path.c_str(), O_RDWR | O_CLOEXEC)) {
        if (fd >= 0 && flock(fd, LOCK_EX) != 0) {
            close(fd);
            fd = -1;
        }
    }
    ~LockedFile() {
        if (fd >= 0) close(fd);
    }
    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;
    int fd;
};

}  // namespace

bool SessionState::Create() const {
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd < 0) return false;
    const Fields start = {0, 0, 0, Running};
    const bool written = write(fd, &start, sizeof(start)) == ssize_t(sizeof(start));
    close(fd);
    return written;
}

bool SessionState::Update(const std::function<void(Fields&)>& change) const {
    LockedFile file(path);
    Fields fields;
    if (file.fd < 0 || pread(file.fd, &fields, sizeof(fields), 0) != ssize_t(sizeof(fields)))
        return false;
    change(fields);
    return pwrite(file.fd, &fields, sizeof(fields), 0) == ssize_t(sizeof(fields));
}

SessionState::Fields SessionState::Read() const {
    Fields fields = {0, 0, 0, Running};
    Update([&](Fields& now) { fields = now; });
    return fields;
}

}  // namespace VantorSim
