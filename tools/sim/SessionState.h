// SPDX-License-Identifier: MIT
#ifndef VANTOR_SIM_SESSIONSTATE_H
#define VANTOR_SIM_SESSIONSTATE_H

#include <functional>
#include <string>

namespace VantorSim {

// What every process of one simulator session shares, kept in a small file of the
// session directory: how far the key script has got, how many screens were recorded,
// the fingerprint of the last one, and why the session was ended early. Every change is
// made under an exclusive flock, which the kernel drops if its holder dies.
class SessionState {
  public:
    enum Ending { Running = 0, ScriptUsedUp = 1, QuitFromTerminal = 2 };
    // The same layout for 32- and 64-bit processes: the 8-byte field first.
    struct Fields {
        unsigned long long lastPrint;
        int nextStep;
        int frames;
        int ending;
    };

    explicit SessionState(std::string path) : path(std::move(path)) {}
    // Writes the starting fields; false if the file cannot be made.
    bool Create() const;
    // Runs change on the fields with the file locked, then writes them back. False (and
    // change not run) when the file cannot be read.
    bool Update(const std::function<void(Fields&)>& change) const;
    Fields Read() const;

  private:
    std::string path;
};

}  // namespace VantorSim

#endif
