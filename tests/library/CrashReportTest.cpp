// SPDX-License-Identifier: MIT
// The crash report written on the error stream for SIGSEGV, SIGABRT and other signals.
#include <gtest/gtest.h>
#include <signal.h>

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <thread>

#include "vantor/Context.h"

namespace {

void FaultAt0x1c() {
    volatile uintptr_t address = 0x1c;  // read at run time: the compiler must not see it
    *reinterpret_cast<volatile int*>(address) = 1;
}

// A sent SIGSEGV is reported and returns; the stream stays in hexadecimal after it, so
// the next report shows signal 11 as b.
void SentSegvTwice() {
    raise(SIGSEGV);
    raise(SIGSEGV);
    std::exit(0);
}

void HostsOwnSigterm() {
    struct sigaction action = {};
    action.sa_sigaction = Vantor::handler;
    action.sa_flags = SA_SIGINFO;
    sigaction(SIGTERM, &action, nullptr);
    raise(SIGTERM);
    std::exit(3);
}

// Another thread takes both streams' locks and keeps them, as a logger blocked on a
// full pipe would; the report must not wait for them.
void FaultWhileTheStreamsAreLocked() {
    volatile bool locked = false;
    std::thread holder([&] {
        flockfile(stdout);
        flockfile(stderr);
        locked = true;
        pause();
    });
    holder.detach();
    while (!locked) sched_yield();
    raise(SIGSEGV);
    _exit(0);
}

}  // namespace

TEST(CrashReportDeathTest, EachSignalIsReportedAndTheProcessEndsItsOwnWay) {
    const struct {
        void (*cause)();
        std::function<bool(int)> ends;
        const char* report;
    } cases[] = {
        {[] { abort(); }, ::testing::KilledBySignal(SIGABRT),
         "^Signal caught!\n\tSignal number: 6\n\tError number:  0\n\tSignal code:   -6\n"
         "Abort!\n"},  // an emulator may add its own line after it
        {FaultAt0x1c, ::testing::KilledBySignal(SIGSEGV),
         "^Signal caught!\n\tSignal number: 11\n\tError number:  0\n\tSignal code:   1\n"
         "Segmentation fault!\nOffending address: 0x1c\n"},
        {SentSegvTwice, ::testing::ExitedWithCode(0),
         "Offending address: 0x[0-9a-f]+\nSignal caught!\n\tSignal number: b\n"},
        {HostsOwnSigterm, ::testing::ExitedWithCode(3), "\tSignal code:   -6\nSignal: 15\n$"},
        {FaultWhileTheStreamsAreLocked, ::testing::ExitedWithCode(0),
         "Segmentation fault!\nOffending address: 0x[0-9a-f]+\n$"},
    };
    for (const auto& c : cases) EXPECT_EXIT(c.cause(), c.ends, c.report) << c.report;
}
