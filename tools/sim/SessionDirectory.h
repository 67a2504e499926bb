// SPDX-License-Identifier: MIT
#ifndef VANTOR_SIM_SESSIONDIRECTORY_H
#define VANTOR_SIM_SESSIONDIRECTORY_H

#include <string>

#include "io/UniqueFd.h"

namespace VantorSim {

// The directory that holds one simulator session's devices, shared by every process
// the simulator starts: the keypad's event node and name file, the framebuffer's memory
// (made by the first process that opens the screen) and the session state. It mirrors
// the virtual paths, so each process's platform layer attaches to it as its root.
// vantor-sim makes it, keeps the event node open so that a key one process queued and
// did not read waits for the next one, and removes it on every way out.
class SessionDirectory {
  public:
    static const int kKeypad = 0;
    static const char kKeypadName[];

    SessionDirectory() = default;
    SessionDirectory(const SessionDirectory&) = delete;
    SessionDirectory& operator=(const SessionDirectory&) = delete;
    ~SessionDirectory() { Remove(); }

    // Makes it under $TMPDIR (or /tmp), its key device named keypadName; false, with
    // nothing left behind, on failure.
    bool Create(const std::string& keypadName = kKeypadName);
    const std::string& Path() const { return path; }
    std::string StatePath() const { return path + "/state"; }
    // Queues a press of a device key code on the keypad; false if the node is full.
    bool QueueKey(int code);
    // Removes it and everything in it; safe to call again, and from a signal's aftermath.
    void Remove();

  private:
    bool MakeKeypad(const std::string& name);

    std::string path;
    Vantor::UniqueFd keypadNode;
};

}  // namespace VantorSim

#endif
