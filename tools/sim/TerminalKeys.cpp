#include "TerminalKeys.h"

#include <linux/input-event-codes.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace VantorSim {

namespace {

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
        case 6:
            return KEY_UP;
        case 7:
            return KEY_DOWN;
        case 149:
            return KEY_ENTER;
        case 50:
            return KEY_SPACE;
        case 150:
            return KEY_BACKSPACE;
        case 152:
            return KEY_HOME;
        case 53:
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
            return 149;  // ok
        case ' ':
            return 50;  // select
        case 127:
        case '\b':
            return 150;
        case 'h':
            return 152;
        case 'q':
            return kQuit;
        case 27:
            break;
        default:
            return -1;
    }
    // Esc alone cancels; Esc [ A..D are the arrow keys.
    if (ReadByte(20) != '[') return 53;
    switch (ReadByte(20)) {
        case 'A':
        case 'D':
            return 6;
        case 'B':
        case 'C':
            return 7;
        default:
            return -1;
    }
}

}  // namespace VantorSim
