// CopyFileWithProgress: a file copy in 1 MiB blocks that moves the progress window's
// bar through its share of the scale.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <iostream>
#include <memory>

#include "Boundary.h"
#include "CopySupport.h"
#include "vantor.h"

using namespace Vantor;

namespace {

const size_t kBlockSize = 1048576;

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

int CopyBlocks(const CopyJob& job, CopyProgress& progress, char* buffer) {
    long long copied = 0;
    while (copied < job.size) {
        const ssize_t got = read(job.source, buffer, kBlockSize);
        if (got == 0) break;  // the source ended early: not an error
        if (got < 0) return Fail("Read error: ", job.sourcePath, static_cast<int>(got));
        if (write(job.target, buffer, static_cast<size_t>(got)) != got) {
            return Fail("Write error: ", job.targetPath, -5);
        }
        copied += got;
        progress.Advance(copied);
    }
    return 0;
}

// A regular file's size can be trusted, except that files of /proc and /sys report 0
// and yet have content: an empty source is believed only if it really reads empty.
bool HasTrustedLength(const CopyJob& job) {
    if (!job.sourceIsRegular) return false;
    if (job.size > 0) return true;
    char byte;
    return read(job.source, &byte, 1) == 0;
}

// The target must hold exactly the source's bytes (an older, longer target must not
// keep its tail) and must have reached storage before the copy is reported done: a
// firmware image that a power cut can undo is not copied.
// Only a regular target is cut to length, and only when the source is a regular file
// whose length we trust: a block device or /proc source reports size 0, copies
// nothing, and must not empty the target. A partition or other device node keeps its size, and
// one that cannot be synchronised at all (EINVAL) has nothing to flush.
int Finish(const CopyJob& job) {
    struct stat status;
    if (fstat(job.target, &status) != 0) return Fail("Write error: ", job.targetPath, -5);
    if (S_ISREG(status.st_mode) && HasTrustedLength(job)) {
        const off_t length = lseek(job.target, 0, SEEK_CUR);
        if (length < 0 || ftruncate(job.target, length) != 0) {
            return Fail("Write error: ", job.targetPath, -5);
        }
    }
    if (fsync(job.target) != 0 && errno != EINVAL) return Fail("Write error: ", job.targetPath, -5);
    return 0;
}

int Copy(const char* source, const char* target, const char* text, float share) {
    struct stat status;
    if (source == nullptr || stat(source, &status) != 0 || status.st_size > INT_MAX) {
        return Fail("Cannot acquire file stat ", source ? source : "(null)", -13);
    }
    std::unique_ptr<char[]> buffer(new char[kBlockSize]);
    CopyProgress progress(text, share, status.st_size);
    Descriptor in(open(source, O_RDONLY));
    if (in.fd < 0) return Fail("Cannot open input file ", source, in.fd);
    Descriptor out(target ? open(target, O_WRONLY | O_CREAT, 0644) : -1);
    if (out.fd < 0) return Fail("Cannot open output file ", target ? target : "(null)", -1);

    const CopyJob job{in.fd, out.fd, status.st_size, S_ISREG(status.st_mode), source, target};
    int result = job.size > 0 ? CopyBlocks(job, progress, buffer.get()) : 0;
    if (result == 0) result = Finish(job);
    if (result != 0) return result;
    progress.Finish();
    return 0;
}

}  // namespace

int CopyFileWithProgress(const char* source, const char* target, const char* text, float share) {
    return Guarded("CopyFileWithProgress", -1, [&] { return Copy(source, target, text, share); });
}
