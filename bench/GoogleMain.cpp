// SPDX-License-Identifier: MIT
// Runs every workload under Google Benchmark, then prints the ratio table.
// Run: scripts/bench.sh, or build/bench/vantor_bench [--benchmark_filter=...]
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <map>

#include "Workload.h"

namespace {

using VantorBench::Workload;
using VantorBench::WorkloadEntry;

std::map<std::string, const WorkloadEntry*>& EntryOf() {
    static std::map<std::string, const WorkloadEntry*> entries;
    return entries;
}

std::map<std::string, double>& UnitsOf() {
    static std::map<std::string, double> units;
    return units;
}

// With repetitions the median stands for the workload; without, its single run.
bool Counts(const benchmark::BenchmarkReporter::Run& run) {
    if (run.error_occurred) return false;
    return run.run_type == benchmark::BenchmarkReporter::Run::RT_Iteration ||
           run.aggregate_name == "median";
}

// Keeps the console output and remembers each workload's seconds per operation.
class TableReporter : public benchmark::ConsoleReporter {
  public:
    using ConsoleReporter::ConsoleReporter;
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (!Counts(run)) continue;
            const std::string name = run.run_name.function_name;
            const bool wall = EntryOf()[name]->wallClock;
            const double time = wall ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
            const double seconds = time / benchmark::GetTimeUnitMultiplier(run.time_unit);
            seconds_[name] = seconds / UnitsOf()[name];
        }
    }
    bool find(const std::string& name, double& seconds) const {
        const auto found = seconds_.find(name);
        if (found == seconds_.end()) return false;
        seconds = found->second;
        return true;
    }

  private:
    std::map<std::string, double> seconds_;
};

void RunWorkload(benchmark::State& state, const WorkloadEntry& entry) {
    std::unique_ptr<Workload> workload = entry.make();
    if (!workload) {
        state.SkipWithError("skipped (see the message above)");
        return;
    }
    UnitsOf()[entry.name] = workload->units();
    for (auto _ : state) workload->Run();
}

}  // namespace

int main(int argc, char** argv) {
    for (const WorkloadEntry& entry : VantorBench::Workloads()) {
        benchmark::internal::Benchmark* registered = benchmark::RegisterBenchmark(
            entry.name.c_str(), [&entry](benchmark::State& state) { RunWorkload(state, entry); });
        EntryOf()[entry.name] = &entry;
        registered->Unit(benchmark::kMicrosecond);
        if (entry.wallClock) registered->UseRealTime();
        if (entry.fixedRuns > 0) registered->Iterations(entry.fixedRuns);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    // Colours only on a terminal: the output is often kept in a file.
    TableReporter reporter(isatty(STDOUT_FILENO) ? TableReporter::OO_Defaults
                                                 : TableReporter::OO_Tabular);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    VantorBench::PrintTable(
        [&](const std::string& name, double& seconds) { return reporter.find(name, seconds); });
    benchmark::Shutdown();
    return 0;
}
