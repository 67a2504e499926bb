#ifndef VANTOR_SIM_SUPERVISOR_H
#define VANTOR_SIM_SUPERVISOR_H

#include <sys/types.h>

namespace VantorSim {

// Runs the program in a process group of its own, which holds every process of the
// session, so the session can be ended as a whole. A terminal is handed to that group
// while it runs (Ctrl-C reaches the program, and its processes may read keys), and
// SIGINT, SIGTERM and SIGHUP sent to vantor-sim are passed on to it; either way the
// program ends first and vantor-sim cleans up after it.
class Supervisor {
  public:
    // Starts program (a null-terminated argument list); prepare runs in the child
    // before the exec. -1 (errno set) if no process could be made.
    pid_t Start(char* const* program, void (*prepare)());
    // Waits for the program and returns its wait status; the rest of its group is then
    // told to end, and the terminal taken back.
    int Wait();
    // The signal that vantor-sim itself received, or 0.
    static int Received();

  private:
    pid_t child = -1;
    bool handedTerminal = false;
};

}  // namespace VantorSim

#endif
