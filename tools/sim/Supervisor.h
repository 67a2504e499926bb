// SPDX-License-Identifier: MIT
#ifndef VANTOR_SIM_SUPERVISOR_H
#define VANTOR_SIM_SUPERVISOR_H

#include <sys/types.h>

namespace VantorSim {

// Runs the program in a process group of its own, which holds every process of the
// session, so the session can be ended as a whole. SIGINT, SIGTERM and SIGHUP sent to
// vantor-sim are passed on to that group, so the program ends first and vantor-sim
// cleans up after it. The terminal either goes to the program's group while it runs
// (Ctrl-C then reaches the program directly, and it may read the terminal), or stays
// with vantor-sim, which reads the keys typed there; the program's standard input is
// then /dev/null, since a read of the terminal would stop it.
class Supervisor {
  public:
    // From now on SIGINT, SIGTERM and SIGHUP are only noted until the program starts.
    static void CatchSignals();
    // Starts program (a null-terminated argument list); prepare runs in the child
    // before the exec. -1 (errno set) if no process could be made, or if one of those
    // signals came first (EINTR).
    pid_t Start(char* const* program, bool handTerminal, void (*prepare)());
    // Waits for the program and returns its wait status, calling idle (if any) again
    // and again meanwhile; the rest of its group is then told to end, and the terminal
    // taken back.
    int Wait(void (*idle)(pid_t group) = nullptr);
    // The signal that vantor-sim itself received, or 0.
    static int Received();

  private:
    pid_t child = -1;
    bool handedTerminal = false;
};

}  // namespace VantorSim

#endif
