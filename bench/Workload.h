// SPDX-License-Identifier: MIT
#ifndef VANTOR_BENCH_WORKLOAD_H
#define VANTOR_BENCH_WORKLOAD_H

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace VantorBench {

// One measured operation. The constructor prepares everything the operation needs, so
// that a run times only Run(); units() says how many operations one Run() performs when
// it does several (a menu walk of many key presses), so times are per operation.
class Workload {
  public:
    virtual ~Workload() = default;
    virtual void Run() = 0;
    virtual double units() const { return 1.0; }
};

struct WorkloadEntry {
    std::string name;
    std::function<std::unique_ptr<Workload>()> make;
    int fixedRuns;  // 0: let the runner choose; else exactly this many (slow file copies)
    // Memory work is timed in process CPU time, which other load on a shared machine
    // does not inflate; work that waits for a device (the file copy) in wall time.
    bool wallClock;
};

// A measured path against the floor it is judged by, and its goal for floor / path time.
struct Comparison {
    std::string path;
    std::string floor;
    double goal;         // the ratio path/floor must not exceed (or, if atLeast, reach)
    bool atLeast;        // true when the goal is a speed ratio floor/path to reach
    std::string remark;  // what the floor is
};

std::vector<WorkloadEntry>& Workloads();
const std::vector<Comparison>& Comparisons();

// Workloads that time parts of their own run (the file copies, interleaved so that a
// drifting disk load hits both alike) keep the fastest time of each part here; the
// table takes these before the runner's own times.
void RecordFastest(const std::string& name, double seconds);
bool FindRecorded(const std::string& name, double& seconds);

// The memory floor of repainting a width x height canvas at the screen's top-left.
std::unique_ptr<Workload> MakeFloor(int width, int height);

// Adds a workload at static initialisation: `static Register r("name", factory);`.
struct Register {
    Register(const char* name, std::function<std::unique_ptr<Workload>()> make, int fixedRuns = 0,
             bool wallClock = false) {
        Workloads().push_back({name, std::move(make), fixedRuns, wallClock});
    }
};

// The ratio table from the measured seconds per operation of each workload; a workload
// that was skipped has no entry and its rows say so.
void PrintTable(const std::function<bool(const std::string&, double&)>& secondsOf);

}  // namespace VantorBench

#endif
