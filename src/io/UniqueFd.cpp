// SPDX-License-Identifier: MIT
#include "UniqueFd.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace Vantor {

UniqueFd& UniqueFd::operator=(UniqueFd&& other) noexcept {
    if (this != &other) Reset(other.Release());
    return *this;
}

UniqueFd UniqueFd::Open(const char* path, int flags, mode_t mode) {
    return UniqueFd(open(path, flags | O_CLOEXEC, mode));
}

int UniqueFd::Release() {
    const int released = fd;
    fd = -1;
    return released;
}

void UniqueFd::Reset(int descriptor) {
    if (fd >= 0 && fd != descriptor) {
        const int saved = errno;  // a close on the way out must not hide the error that led there
        close(fd);
        errno = saved;
    }
    fd = descriptor;
}

bool UniqueFd::Close() {
    if (fd < 0) return true;
    const int result = close(Release());
    return result == 0 || errno == EINTR;
}

}  // namespace Vantor
