// SPDX-License-Identifier: MIT
#include "StopSignals.h"

#include <vantor.h>

namespace VantorTool {

namespace {

const int kStopping[] = {SIGINT, SIGTERM, SIGHUP};
volatile sig_atomic_t received = 0;

void Received(int signal) {
    received = signal;
    CancelCopy();
}

}  // namespace

StopSignals::StopSignals() {
    struct sigaction action = {};
    action.sa_handler = Received;
    sigemptyset(&action.sa_mask);
    // A signal ignored on the way in (nohup, a background job of a script) stays so.
    for (int i = 0; i < 3; ++i) {
        sigaction(kStopping[i], nullptr, &previous[i]);
        if (previous[i].sa_handler != SIG_IGN) sigaction(kStopping[i], &action, nullptr);
    }
}

StopSignals::~StopSignals() {
    for (int i = 0; i < 3; ++i) sigaction(kStopping[i], &previous[i], nullptr);
}

void StopSignals::EndAsAsked() {
    const int signal = received;
    if (signal == 0) return;
    struct sigaction plain = {};
    plain.sa_handler = SIG_DFL;
    sigemptyset(&plain.sa_mask);
    sigaction(signal, &plain, nullptr);
    raise(signal);
}

}  // namespace VantorTool
