// SPDX-License-Identifier: MIT
#include "SessionState.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "io/UniqueFd.h"

namespace VantorSim {

namespace {

using Vantor::UniqueFd;

// The state file, open and locked; closing it drops the lock.
UniqueFd OpenLocked(const std::string& path) {
    UniqueFd file = UniqueFd::Open(path.c_str(), O_RDWR);
    if (file.IsOpen() && flock(file.Get(), LOCK_EX) != 0) file.Reset();
    return file;
}

}  // namespace

bool SessionState::Create() const {
    UniqueFd file = UniqueFd::Open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0644);
    if (!file.IsOpen()) return false;
    const Fields start = {0, 0, 0, Running};
    return write(file.Get(), &start, sizeof(start)) == ssize_t(sizeof(start));
}

bool SessionState::Update(const std::function<void(Fields&)>& change) const {
    const UniqueFd file = OpenLocked(path);
    Fields fields;
    if (!file.IsOpen() || pread(file.Get(), &fields, sizeof(fields), 0) != ssize_t(sizeof(fields)))
        return false;
    change(fields);
    return pwrite(file.Get(), &fields, sizeof(fields), 0) == ssize_t(sizeof(fields));
}

SessionState::Fields SessionState::Read() const {
    Fields fields = {0, 0, 0, Running};
    Update([&](Fields& now) { fields = now; });
    return fields;
}

}  // namespace VantorSim
