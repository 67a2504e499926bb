// SPDX-License-Identifier: MIT
#ifndef VANTOR_BENCH_UPDATETIMING_H
#define VANTOR_BENCH_UPDATETIMING_H

#include <benchmark/benchmark.h>
#include <time.h>

#include "vantor.h"

namespace VantorBench {

// CPU nanoseconds of one Update, averaged over the benchmark's iterations. This thread's
// CPU time rather than the wall clock: on a shared machine the wall clock also counts
// other processes, and the ratios compare runs made at different moments.
inline double UpdateCpuNanoseconds(benchmark::State& state) {
    auto now = [] {
        timespec t;
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
        return double(t.tv_sec) * 1e9 + double(t.tv_nsec);
    };
    double nanoseconds = 0;
    for (auto _ : state) {
        const double start = now();
        Update();
        nanoseconds += now() - start;
    }
    return nanoseconds / double(state.iterations());
}

}  // namespace VantorBench

#endif
