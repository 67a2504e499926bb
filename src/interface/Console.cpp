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

#include "io/UniqueFd.h"
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

// Opens the foreground terminal into `console` and reads its mode now: 0, or a failure
// code when there is no virtual terminal (no /dev/tty0, a serial console) or it is not
// ours.
int OpenConsole(UniqueFd& console, int& mode) {
    console = UniqueFd::Open(kConsole, O_RDWR | O_NOCTTY);
    if (!console.IsOpen()) return Failure(errno);
    if (ioctl(console.Get(), KDGETMODE, &mode) != 0) {
        console.Reset();
        return -19;
    }
    return 0;
}

int SetMode(int fd, int mode) {
    return ioctl(fd, KDSETMODE, mode) == 0 ? 0 : Failure(errno);
}

// The console back in text mode now, whoever left it off.
int GiveBackText() {
    UniqueFd console(heldDescriptor.exchange(-1));
    if (!console.IsOpen()) {
        int mode = KD_TEXT;
        const int opened = OpenConsole(console, mode);
        if (opened != 0) return opened;
    }
    return SetMode(console.Get(), KD_TEXT);
}

int KeepOff(bool afterExit) {
    UniqueFd fresh;
    int fd = heldDescriptor.load();
    if (fd < 0) {
        int mode = KD_TEXT;
        const int opened = OpenConsole(fresh, mode);
        if (opened != 0) return opened;
        foundMode.store(mode);
        fd = fresh.Get();
    }
    const int result = SetMode(fd, KD_GRAPHICS);
    if (result != 0) return result;
    if (afterExit) {
        // Off for good: this process has nothing left to give back, and closes what it
        // held along with what it just opened.
        const UniqueFd held(heldDescriptor.exchange(-1));
        return 0;
    }
    holder.store(getpid());
    if (fresh.IsOpen()) heldDescriptor.store(fresh.Release());
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
    const UniqueFd held(heldDescriptor.exchange(-1));
    if (held.IsOpen()) ioctl(held.Get(), KDSETMODE, foundMode.load());
}

}  // namespace Vantor

int setConsoleGraphics(int mode) {
    return Vantor::CConsole::Set(mode);
}
