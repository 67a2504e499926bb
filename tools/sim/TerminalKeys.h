// SPDX-License-Identifier: MIT
#ifndef VANTOR_SIM_TERMINALKEYS_H
#define VANTOR_SIM_TERMINALKEYS_H

namespace VantorSim {

// Keys typed on the terminal while a program runs in the simulator: arrows move, Enter
// chooses, Backspace goes back, Esc cancels, h is home, q quits the program.
class TerminalKeys {
  public:
    static const int kQuit = -2;

    bool Start();  // false when standard input is not a terminal
    void Stop();
    // The device code of a key typed within `milliseconds`, kQuit, or -1 for none.
    int Poll(int milliseconds);
    // Typed keys then arrive with a keyboard's codes (KEY_UP, KEY_ENTER, KEY_ESC...)
    // instead of the keypad's.
    void SendKeyboardCodes() { keyboard = true; }

  private:
    int ReadByte(int milliseconds);
    int PollKeypadCode(int milliseconds);
    bool started = false;
    bool keyboard = false;
};

}  // namespace VantorSim

#endif
