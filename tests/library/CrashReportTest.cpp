// The crash report written on the error stream for SIGSEGV, SIGABRT and other signals.
#include <gtest/gtest.h>
#include <signal.h>

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "vantor/Context.h"

namespace {

void RaiseTwiceAndExit(int first, int second) {
    raise(first);
    raise(second);
    std::cerr << 11 << std::endl;  // the stream stays in hexadecimal after a fault report
    std::exit(0);
}

// Another thread takes a stream's lock and keeps it, as a logger blocked on a full
// pipe would; the report must not wait for it.
void FaultWhileLocked(FILE* stream) {
    volatile bool locked = false;
    std::thread holder([&] {
        flockfile(stream);
        locked = true;
        pause();
    });
    holder.detach();
    while (!locked) sched_yield();
    raise(SIGSEGV);
    _exit(0);
}

}  // namespace

TEST(CrashReportDeathTest, AbortReportsFiveLinesAndTheProcessEnds) {
    EXPECT_DEATH(abort(),
                 "^Signal caught!\n\tSignal number: 6\n\tError number:  0\n\tSignal code:   -6\n"
                 "Abort!\n");  // an emulator may add its own line after it
}

TEST(CrashReportDeathTest, SentSegvIsReportedAndLeavesTheStreamInHex) {
    EXPECT_EXIT(RaiseTwiceAndExit(SIGSEGV, SIGSEGV), ::testing::ExitedWithCode(0),
                "Segmentation fault!\nOffending address: 0x[0-9a-f]+\nSignal caught!\n"
                "\tSignal number: b\n.*\nb\n$");
}

TEST(CrashReportDeathTest, RealFaultIsReportedOnceAndEndsTheProcess) {
    EXPECT_EXIT(
        {
            volatile uintptr_t address = 0x1c;  // read at run time: the compiler must not see it
            *reinterpret_cast<volatile int*>(address) = 1;
        },
        ::testing::KilledBySignal(SIGSEGV),
        "^Signal caught!\n\tSignal number: 11\n\tError number:  0\n\tSignal code:   1\n"
        "Segmentation fault!\nOffending address: 0x1c\n");
}

TEST(CrashReportDeathTest, OtherSignalsNameTheirNumber) {
    EXPECT_EXIT(
        {
            struct sigaction action = {};
            action.sa_sigaction = Vantor::handler;
            action.sa_flags = SA_SIGINFO;
            sigaction(SIGTERM, &action, nullptr);
            raise(SIGTERM);
            std::exit(3);
        },
        ::testing::ExitedWithCode(3), "\tSignal code:   -6\nSignal: 15\n$");
}

TEST(CrashReportDeathTest, ReportsWhileAnotherThreadHoldsTheStreams) {
    for (FILE* stream : {stdout, stderr}) {
        EXPECT_EXIT(FaultWhileLocked(stream), ::testing::ExitedWithCode(0),
                    "Segmentation fault!\nOffending address: 0x[0-9a-f]+\n$");
    }
}

#ifndef __SANITIZE_ADDRESS__  // AddressSanitizer reports a double free itself
namespace {

// A double free: the allocator itself stops the process from inside free().
void FaultInsideMalloc() {
    void* (*volatile allocate)(size_t) = malloc;
    void (*volatile release)(void*) = free;
    void* chunk = allocate(48);
    release(chunk);
    release(chunk);
    _exit(0);  // an allocator that noticed nothing
}

bool DiedOfSegvOrAbort(int status) {
    return WIFSIGNALED(status) && (WTERMSIG(status) == SIGSEGV || WTERMSIG(status) == SIGABRT);
}

}  // namespace

TEST(CrashReportDeathTest, FaultInsideTheAllocatorIsReported) {
    EXPECT_EXIT(FaultInsideMalloc(), DiedOfSegvOrAbort, "Signal caught!\n(.|\n)*Abort!\n");
}
#endif
