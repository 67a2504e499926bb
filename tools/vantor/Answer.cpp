// SPDX-License-Identifier: MIT
#include "Answer.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "ExitStatus.h"
#include "io/UniqueFd.h"

namespace VantorTool {

namespace {

int stdoutClosed = 0;  // EBADF when the caller closed it, else 0

}  // namespace

void GuardStandardStreams() {
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
        if (fcntl(fd, F_GETFD) >= 0 || errno != EBADF) continue;
        if (fd == STDOUT_FILENO) stdoutClosed = EBADF;
        // Opened to be inherited as the stream it stands for; a higher number would be
        // only the way there.
        Vantor::UniqueFd null(open("/dev/null", fd == STDIN_FILENO ? O_RDONLY : O_WRONLY));
        if (null.Get() == fd) null.Release();
        if (null.IsOpen()) dup2(null.Get(), fd);
    }
}

int WriteOut(const std::string& text) {
    int error = stdoutClosed;
    for (size_t done = 0; error == 0 && done < text.size();) {
        const ssize_t wrote = write(STDOUT_FILENO, text.data() + done, text.size() - done);
        if (wrote < 0 && errno == EINTR) continue;
        if (wrote <= 0) error = wrote < 0 ? errno : EIO;
        if (wrote > 0) done += size_t(wrote);
    }
    return error;
}

void WriteAnswer(const std::string& line) {
    const int error = WriteOut(line + "\n");
    if (error != 0) {
        throw CommandFailure(kExitAnswerLost, "cannot write the answer \"" + line +
                                                  "\" to standard output: " + std::strerror(error));
    }
}

}  // namespace VantorTool
