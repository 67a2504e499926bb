// SPDX-License-Identifier: MIT
#include "TerminalKeys.h"

#include <linux/input-event-codes.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include "vantor/KeypadMatrix.h"

namespace VantorSim {

namespace {

namespace KeypadMatrix = Vantor::KeypadMatrix;

termios saved;

}  // namespace

bool TerminalKeys::Start() {
    if (!isatty(STDIN_FILENO) || tcgetattr(STDIN_FILENO, &saved) != 0) return false;
    termios raw = saved;
    raw.c_lflag &= tcflag_t(~(ICANON | ECHO));
    raw.c_cc[VMIN] = 0;
    raw.c_cc[VTIME] = 0;
    started = tcsetattr(STDIN_FILENO, TCSANOW, &raw) == 0;
    return started;
}

void TerminalKeys::Stop() {
    if (started) tcsetattr(STDIN_FILENO, TCSANOW, &saved);
    started = false;
}

int TerminalKeys::ReadByte(int milliseconds) {
    pollfd in = {STDIN_FILENO, POLLIN, 0};
    unsigned char byte = 0;
    if (poll(&in, 1, milliseconds) != 1 || read(STDIN_FILENO, &byte, 1) != 1) return -1;
    return byte;
}

int TerminalKeys::Poll(int milliseconds) {
    const int code = PollKeypadCode(milliseconds);
    if (!keyboard) return code;
    switch (code) {
        case KeypadMatrix::kUp:
            return KEY_UP;
        case KeypadMatrix::kDown:
            return KEY_DOWN;
        case KeypadMatrix::kOk:
            return KEY_ENTER;
        case KeypadMatrix::kSelect:
            return KEY_SPACE;
        case KeypadMatrix::kBack:
            return KEY_BACKSPACE;
        case KeypadMatrix::kHome:
            return KEY_HOME;
        case KeypadMatrix::kCancel:
            return KEY_ESC;
        default:
            return code;
    }
}

int TerminalKeys::PollKeypadCode(int milliseconds) {
    const int byte = ReadByte(milliseconds);
    switch (byte) {
        case '\r':
        case '\n':
            return KeypadMatrix::kOk;
        case ' ':
            return KeypadMatrix::kSelect;
        case 127:
        case '\b':
            return KeypadMatrix::kBack;
        case 'h':
            return KeypadMatrix::kHome;
        case 'q':
            return kQuit;
        case 27:
            break;
        default:
            return -1;
    }
    // Esc alone cancels; Esc [ A..D are the arrow keys.
    if (ReadByte(20) != '[') return KeypadMatrix::kCancel;
    switch (ReadByte(20)) {
        case 'A':
        case 'D':
            return KeypadMatrix::kUp;
        case 'B':
        case 'C':
            return KeypadMatrix::kDown;
        default:
            return -1;
    }
}

}  // namespace VantorSim
