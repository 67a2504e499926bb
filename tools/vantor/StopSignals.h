// SPDX-License-Identifier: MIT
// The signals that ask a running copy to stop (Ctrl-C, SIGTERM, a closed terminal).
#ifndef VANTOR_TOOL_STOP_SIGNALS_H
#define VANTOR_TOOL_STOP_SIGNALS_H

#include <signal.h>

namespace VantorTool {

// While it lives, SIGINT, SIGTERM and SIGHUP ask the library's copy to stop instead of
// ending the process mid-write. Afterwards EndAsAsked ends the process by the signal
// that came, so the caller's shell sees what it would have seen without us.
class StopSignals {
  public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;
    // Ends the process if a signal came; returns if none did.
    void EndAsAsked();

  private:
    struct sigaction previous[3];
};

}  // namespace VantorTool

#endif
