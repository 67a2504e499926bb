// SPDX-License-Identifier: MIT
// setConsoleGraphics. The console is reached through /dev/tty0, which the kernel binds
// to the foreground terminal at open: the descriptor kept while the console is held
// off stays on that terminal, so the mode is given back where it was taken even if
// another terminal is in front by then.
#include "Console.h"

#include <errno.h>
#include <fcntl.h>
#include <linux/kd.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>

#include "vantor.h"

namespace Vantor {

namespace {

const char kConsole[] = "/dev/tty0";

// While the console is held off: the descriptor, the mode found before, and the
// process that took it (a forked child that exits must not give back its parent's).
std::atomic<int> heldDescriptor{-1};
std::atomic<int> foundMode{KD_TEXT};
std::atomic<pid_t> holder{0};

int Failure(int error) {
    return error == EACCES || error == EPERM ? -13 : -19;
}

// A descriptor on the foreground terminal and its mode now, or a failure code when
// there is no virtual terminal (no /dev/tty0, a serial console) or it is not ours.
int OpenConsole(int& mode) {
    const int fd = open(kConsole, O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) return Failure(errno);
    if (ioctl(fd, KDGETMODE, &mode) != 0) {
        close(fd);
        return -19;
    }
    return fd;
}

int SetMode(int fd, int mode) {
    return ioctl(fd, KDSETMODE, mode) == 0 ? 0 : Failure(errno);
}

// The console back in text mode now, whoever left it off.
int GiveBackText() {
    int fd = heldDescriptor.exchange(-1);
    if (fd < 0) {
        int mode = KD_TEXT;
        fd = OpenConsole(mode);
        if (fd < 0) return fd;
    }
    const int result = SetMode(fd, KD_TEXT);
    close(fd);
    return result;
}

int KeepOff(bool afterExit) {
    int fd = heldDescriptor.load();
    const bool fresh = fd < 0;
    if (fresh) {
        int mode = KD_TEXT;
        fd = OpenConsole(mode);
        if (fd < 0) return fd;
        foundMode.store(mode);
    }
    const int result = SetMode(fd, KD_GRAPHICS);
    if (result != 0) {
        if (fresh) close(fd);
        return result;
    }
    if (afterExit) {
        // Off for good: this process has nothing left to give back.
        heldDescriptor.store(-1);
        close(fd);
        return 0;
    }
    holder.store(getpid());
    heldDescriptor.store(fd);
    return 0;
}

}  // namespace

int CConsole::Set(int mode) {
    switch (mode) {
        case VANTOR_CONSOLE_ON:
            return GiveBackText();
        case VANTOR_CONSOLE_OFF:
            return KeepOff(false);
        case VANTOR_CONSOLE_OFF_KEPT:
            return KeepOff(true);
        default:
            return -1;
    }
}

void CConsole::GiveBack() {
    if (holder.load() != getpid()) return;
    const int fd = heldDescriptor.exchange(-1);
    if (fd < 0) return;
    ioctl(fd, KDSETMODE, foundMode.load());
    close(fd);
}

}  // namespace Vantor

int setConsoleGraphics(int mode) {
    return Vantor::CConsole::Set(mode);
}
