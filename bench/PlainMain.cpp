// SPDX-License-Identifier: MIT
// The same workloads timed with std::chrono alone, for targets that have no Google
// Benchmark (the armhf cross build under qemu-arm): the median of five batches of at
// least 50 ms each, in CPU time; the file copies time themselves (CopyWorkloads.cpp). The ratio
// table is the same as vantor_bench's.
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>

#include "Workload.h"

namespace {

using Clock = std::chrono::steady_clock;
using VantorBench::Workload;

double Now(bool wallClock) {
    if (wallClock) return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
    timespec used;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return double(used.tv_sec) + double(used.tv_nsec) * 1e-9;
}

double SecondsFor(Workload& workload, long runs, bool wallClock) {
    const double start = Now(wallClock);
    for (long k = 0; k < runs; ++k) workload.Run();
    return Now(wallClock) - start;
}

double SecondsPerRun(Workload& workload, const VantorBench::WorkloadEntry& entry) {
    workload.Run();  // warm-up
    if (entry.fixedRuns > 0) {
        return SecondsFor(workload, entry.fixedRuns, entry.wallClock) / entry.fixedRuns;
    }
    long runs = 1;
    while (SecondsFor(workload, runs, entry.wallClock) < 0.05) runs *= 2;
    double batches[5];
    for (double& seconds : batches) {
        seconds = SecondsFor(workload, runs, entry.wallClock) / double(runs);
    }
    std::sort(batches, batches + 5);
    return batches[2];
}

}  // namespace

int main() {
    std::map<std::string, double> seconds;
    for (const VantorBench::WorkloadEntry& entry : VantorBench::Workloads()) {
        std::unique_ptr<Workload> workload = entry.make();
        if (!workload) continue;
        const double each = SecondsPerRun(*workload, entry) / workload->units();
        std::printf("%-14s %12.2f us\n", entry.name.c_str(), each * 1e6);
        std::fflush(stdout);
        seconds[entry.name] = each;
    }
    VantorBench::PrintTable([&](const std::string& name, double& value) {
        const auto found = seconds.find(name);
        if (found == seconds.end()) return false;
        value = found->second;
        return true;
    });
    return 0;
}
