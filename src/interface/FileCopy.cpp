// SPDX-License-Identifier: MIT
// CopyFileWithProgress: a file copy in 1 MiB blocks that moves the progress window's
// bar through its share of the scale.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <iostream>
#include <new>

#include "Boundary.h"
#include "copy/CopyEngine.h"
#include "vantor.h"

using namespace Vantor;

namespace {

int Fail(const char* message, const char* path, int result) {
    std::cerr << message << path << std::endl;
    return result;
}

struct CopyJob {
    int source;
    int target;
    long long size;
    bool sourceIsRegular;
    const char* sourcePath;
    const char* targetPath;
};

// A regular file's size can be trusted, except that files of /proc and /sys report 0
// and yet have content: an empty source is believed only if it really reads empty.
bool HasTrustedLength(const CopyJob& job, const CopyEngine& engine) {
    if (!job.sourceIsRegular) return false;
    if (job.size > 0) return true;
    char byte;
    return engine.Read(job.source, &byte, 1) == 0;
}

// The target must hold exactly the source's bytes (an older, longer target must not
// keep its tail) and must have reached storage before the copy is reported done: a
// firmware image that a power cut can undo is not copied.
// Only a regular target is cut to length, and only when the source is a regular file
// whose length we trust: a block device or /proc source reports size 0, copies
// nothing, and must not empty the target. A partition or other device node keeps its size, and
// one that cannot be synchronised at all (EINVAL) has nothing to flush.
int Finish(const CopyJob& job, const CopyEngine& engine) {
    struct stat status;
    if (fstat(job.target, &status) != 0) return Fail("Write error: ", job.targetPath, -5);
    if (S_ISREG(status.st_mode) && HasTrustedLength(job, engine)) {
        const off_t length = lseek(job.target, 0, SEEK_CUR);
        if (length < 0 || ftruncate(job.target, length) != 0) {
            return Fail("Write error: ", job.targetPath, -5);
        }
    }
    if (engine.Sync(job.target) != 0) return Fail("Write error: ", job.targetPath, -5);
    return 0;
}

// This call has always made one read and one write a block and taken their results as
// they come: a short write fails with -5, a failed read answers read's own -1, and a
// source that ends early ends the copy without a fault.
int Copy(const char* source, const char* target, const char* text, float share) {
    struct stat status;
    if (source == nullptr || stat(source, &status) != 0 || status.st_size > INT_MAX) {
        return Fail("Cannot acquire file stat ", source ? source : "(null)", -13);
    }
    CopyEngine engine(CopyEngine::kOneCall);
    if (!engine.Allocate()) throw std::bad_alloc();
    CopyProgress progress(text, share, status.st_size);
    const UniqueFd in = engine.Open(source, O_RDONLY);
    if (!in.IsOpen()) return Fail("Cannot open input file ", source, -1);
    const UniqueFd out = target ? engine.Open(target, O_WRONLY | O_CREAT, 0644) : UniqueFd();
    if (!out.IsOpen()) return Fail("Cannot open output file ", target ? target : "(null)", -1);

    const CopyJob job{in.Get(), out.Get(), status.st_size, S_ISREG(status.st_mode), source, target};
    if (job.size > 0) {
        const CopyFault fault = engine.Copy(job.source, job.target, job.size, progress);
        if (fault.side == CopyFault::kRead) return Fail("Read error: ", source, -1);
        if (fault.side == CopyFault::kWrite) return Fail("Write error: ", target, -5);
    }
    const int result = Finish(job, engine);
    if (result != 0) return result;
    progress.Finish();
    return 0;
}

}  // namespace

int CopyFileWithProgress(const char* source, const char* target, const char* text, float share) {
    return Guarded("CopyFileWithProgress", -1, [&] { return Copy(source, target, text, share); });
}
