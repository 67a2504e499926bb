// SPDX-License-Identifier: MIT
#include "Supervisor.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "io/UniqueFd.h"

namespace VantorSim {

namespace {

const int kPassedOn[] = {SIGINT, SIGTERM, SIGHUP};
volatile sig_atomic_t group = 0;
volatile sig_atomic_t received = 0;

// The first signal asks the program to end; a second one insists.
void PassOn(int signal) {
    const int sent = received != 0 ? SIGKILL : signal;
    received = signal;
    if (group > 0) kill(-group, sent);
}

void SetSignals(void (*handler)(int)) {
    struct sigaction action;
    std::memset(&action, 0, sizeof(action));
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    for (int signal : kPassedOn) sigaction(signal, &action, nullptr);
}

void Block(int how, int signal) {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, signal);
    sigprocmask(how, &set, nullptr);
}

void BlockPassedOn(int how) {
    sigset_t set;
    sigemptyset(&set);
    for (int signal : kPassedOn) sigaddset(&set, signal);
    sigprocmask(how, &set, nullptr);
}

// A process outside the terminal's foreground group may only change it with SIGTTOU
// held back.
void GiveTerminal(pid_t to) {
    Block(SIG_BLOCK, SIGTTOU);
    tcsetpgrp(STDIN_FILENO, to);
    Block(SIG_UNBLOCK, SIGTTOU);
}

// /dev/null becomes the program's standard input, so it is opened to be inherited; a
// descriptor above 0 is only the way there.
void KeepOffTerminal() {
    Vantor::UniqueFd none(open("/dev/null", O_RDONLY));
    if (none.Get() == STDIN_FILENO) none.Release();
    if (none.IsOpen()) dup2(none.Get(), STDIN_FILENO);
}

}  // namespace

pid_t Supervisor::Start(char* const* program, bool handTerminal, void (*prepare)()) {
    const bool ownsTerminal = isatty(STDIN_FILENO) && tcgetpgrp(STDIN_FILENO) == getpgrp();
    handedTerminal = handTerminal && ownsTerminal;
    CatchSignals();
    // Held back until each side is ready: a signal that reached the child before it
    // dropped our handler would be swallowed there instead of ending it.
    BlockPassedOn(SIG_BLOCK);
    child = received != 0 ? -1 : fork();
    if (child < 0 && received != 0) errno = EINTR;
    if (child == 0) {
        SetSignals(SIG_DFL);
        BlockPassedOn(SIG_UNBLOCK);
        setpgid(0, 0);
        if (handedTerminal) GiveTerminal(getpgrp());
        if (!handTerminal && isatty(STDIN_FILENO)) KeepOffTerminal();
        prepare();
        execvp(program[0], program);
        std::fprintf(stderr, "vantor-sim: cannot run %s: %s\n", program[0], std::strerror(errno));
        _exit(127);
    }
    if (child > 0) {
        setpgid(child, child);  // also here, so that no signal finds the group missing
        group = child;
    }
    const int error = errno;
    BlockPassedOn(SIG_UNBLOCK);
    errno = error;
    return child;
}

int Supervisor::Wait(void (*idle)(pid_t group)) {
    int status = 0;
    for (;;) {
        const pid_t ended = waitpid(child, &status, idle ? WNOHANG : 0);
        if (ended == child || (ended < 0 && errno != EINTR)) break;
        if (idle && ended == 0) idle(child);
    }
    // What the program left running has lost its screen and keypad with the session.
    kill(-child, SIGTERM);
    group = 0;
    if (handedTerminal) GiveTerminal(getpgrp());
    return status;
}

void Supervisor::CatchSignals() {
    SetSignals(PassOn);
}

int Supervisor::Received() {
    return received;
}

}  // namespace VantorSim
