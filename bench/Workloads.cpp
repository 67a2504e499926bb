// SPDX-License-Identifier: MIT
#include <cstdio>
#include <map>

#include "Workload.h"

namespace VantorBench {

std::vector<WorkloadEntry>& Workloads() {
    static std::vector<WorkloadEntry> all;
    return all;
}

const std::vector<Comparison>& Comparisons() {
    static const std::vector<Comparison> all = {
        {"update/empty", "floor/screen", 1.2, false, "fill + 2 copies of 800x480"},
        {"update/text", "floor/screen", 2.0, false, "fill + 2 copies of 800x480"},
        {"progress/bar", "floor/window", 5.0, false, "1 copy of the 500x70 window"},
        {"menu/step", "floor/menu", 2.0, false, "fill + 2 copies of the menu"},
        {"rgb_to_rgba", "floor/rgba", 2.0, false, "1 copy of the 32-bit output"},
        {"copy/library", "copy/plain", 0.95, true, "read/write/fsync loop"},
    };
    return all;
}

namespace {

std::map<std::string, double>& Recorded() {
    static std::map<std::string, double> fastest;
    return fastest;
}

}  // namespace

void RecordFastest(const std::string& name, double seconds) {
    const auto found = Recorded().find(name);
    if (found == Recorded().end() || seconds < found->second) Recorded()[name] = seconds;
}

bool FindRecorded(const std::string& name, double& seconds) {
    const auto found = Recorded().find(name);
    if (found == Recorded().end()) return false;
    seconds = found->second;
    return true;
}

namespace {

double SecondsOf(const std::function<bool(const std::string&, double&)>& measured,
                 const std::string& name, double& seconds) {
    return FindRecorded(name, seconds) || measured(name, seconds);
}

void PrintRow(const Comparison& c, double path, double floor) {
    const double ratio = c.atLeast ? floor / path : path / floor;
    const bool met = c.goal <= 0.0 || (c.atLeast ? ratio >= c.goal : ratio <= c.goal);
    char goal[32] = "-";
    if (c.goal > 0.0) std::snprintf(goal, sizeof goal, "%s %.2f", c.atLeast ? ">=" : "<=", c.goal);
    std::printf("%-14s %12.1f %12.1f %7.2f  %-8s %-4s %s\n", c.path.c_str(), path * 1e6,
                floor * 1e6, ratio, goal, met ? "ok" : "MISS", c.remark.c_str());
}

}  // namespace

void PrintTable(const std::function<bool(const std::string&, double&)>& secondsOf) {
    std::printf("\n%-14s %12s %12s %7s  %-8s %-4s %s\n", "path", "path us", "floor us", "ratio",
                "goal", "", "floor");
    for (const Comparison& c : Comparisons()) {
        double path = 0.0;
        double floor = 0.0;
        if (SecondsOf(secondsOf, c.path, path) && SecondsOf(secondsOf, c.floor, floor)) {
            PrintRow(c, path, floor);
        } else {
            std::printf("%-14s skipped\n", c.path.c_str());
        }
    }
    std::printf("(copy: fastest of interleaved runs; ratio = plain loop time / library time)\n");
}

}  // namespace VantorBench
