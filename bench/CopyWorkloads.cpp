// SPDX-License-Identifier: MIT
// CopyFileWithProgress of a 256 MiB file, with the progress window on the screen,
// against the plainest loop that does the same job: read and write 1 MiB blocks, then
// fsync. Both write over the same target, so neither pays for allocating its blocks;
// the table compares the fastest copy of each.
#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "BenchScreen.h"
#include "Workload.h"
#include "vantor.h"

namespace VantorBench {

namespace {

const size_t kFileBytes = size_t(256) << 20;
const size_t kBlockBytes = size_t(1) << 20;
const int kRuns = 1;  // per repetition; the runners repeat wall-clock work

std::string Directory() {
    const char* tmp = std::getenv("TMPDIR");
    return tmp != nullptr && *tmp != '\0' ? tmp : "/tmp";
}

const std::string& SourcePath() {
    static const std::string path = Directory() + "/vantor-bench-copy-" + std::to_string(getpid());
    return path;
}

std::string TargetPath() {
    return SourcePath() + ".out";
}

bool CopyPlain(const char* from, const char* to) {
    std::vector<char> block(kBlockBytes);
    const int in = open(from, O_RDONLY);
    const int out = open(to, O_WRONLY | O_CREAT, 0644);
    bool ok = in >= 0 && out >= 0;
    for (ssize_t got = 1; ok && got > 0;) {
        got = read(in, block.data(), block.size());
        ok = got >= 0 && write(out, block.data(), size_t(got)) == got;
    }
    ok = ok && fsync(out) == 0;
    if (in >= 0) close(in);
    if (out >= 0) close(out);
    return ok;
}

bool HasRoom() {
    struct statvfs fs;
    if (statvfs(Directory().c_str(), &fs) != 0) return false;
    const unsigned long long free = static_cast<unsigned long long>(fs.f_bavail) * fs.f_frsize;
    return free > 3 * kFileBytes;  // source, target, and room to spare
}

// Writes the source and a first target once; both are removed when the process ends.
bool PrepareFiles() {
    static const bool ready = [] {
        if (!HasRoom()) {
            std::fprintf(stderr, "bench: less than 768 MiB free in %s, file copy skipped\n",
                         Directory().c_str());
            return false;
        }
        std::vector<char> block(kBlockBytes);
        for (size_t i = 0; i < block.size(); ++i) block[i] = static_cast<char>(i * 31 + i / 4096);
        FILE* source = std::fopen(SourcePath().c_str(), "wb");
        bool ok = source != nullptr;
        for (size_t done = 0; ok && done < kFileBytes; done += block.size()) {
            ok = std::fwrite(block.data(), 1, block.size(), source) == block.size();
        }
        if (source != nullptr) ok = std::fclose(source) == 0 && ok;
        std::atexit([] {
            unlink(SourcePath().c_str());
            unlink(TargetPath().c_str());
        });
        return ok && CopyPlain(SourcePath().c_str(), TargetPath().c_str());
    }();
    return ready;
}

double WallSeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

// Each run copies once with the plain loop and once with the library, in turns, so that
// disk load from elsewhere on the machine falls on both alike.
class CopyPair : public Workload {
  public:
    CopyPair() {
        InitProgress(150, 205, 500, 70);
        ShowProgress("Copying", 1, 0.0f);
    }
    void Run() override {
        plainFirst = !plainFirst;
        if (plainFirst) TimePlain();
        TimeLibrary();
        if (!plainFirst) TimePlain();
    }

  private:
    void TimePlain() {
        const double start = WallSeconds();
        CopyPlain(SourcePath().c_str(), TargetPath().c_str());
        RecordFastest("copy/plain", WallSeconds() - start);
    }
    void TimeLibrary() {
        UpdateProgress(nullptr, 1, 0.0f);  // each copy runs the bar from 0 to 100
        const double start = WallSeconds();
        CopyFileWithProgress(SourcePath().c_str(), TargetPath().c_str(), "Copying", 100.0f);
        RecordFastest("copy/library", WallSeconds() - start);
    }
    bool plainFirst = false;
};

std::unique_ptr<Workload> MakeCopy() {
    if (!StartLibrary() || !PrepareFiles()) return nullptr;
    return std::unique_ptr<Workload>(new CopyPair());
}

const Register kPair("copy/pair", MakeCopy, kRuns, true);

}  // namespace

}  // namespace VantorBench
