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
#include "vantor.h"
#include "vantor/Context.h"
#include "vantor/Progress.h"
#include "vantor/ProgressBar.h"

using namespace Vantor;

namespace {

const size_t kBlockSize = 1048576;

// Owns a descriptor so that every way out of the copy closes it exactly once.
class Descriptor {
  public:
    explicit Descriptor(int value) : fd(value) {}
    ~Descriptor() {
        if (fd >= 0) close(fd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int fd;
};

int Fail(const char* message, const char* path, int result) {
    std::cerr << message << path << std::endl;
    return result;
}

bool HasProgressWindow() {
    return IsContextValid(pContext) && pContext->pProgress != nullptr;
}

float StartingPercent() {
    if (!HasProgressWindow() || pContext->pProgress->pBar == nullptr) return 0.0f;
    return pContext->pProgress->pBar->progress;
}

void Report(const char* text, float percent) {
    if (HasProgressWindow()) UpdateProgress(text, eAlignLeft, percent);
}

struct CopyJob {
    int source;
    int target;
    long long size;
    float start;
    float share;
    const char* text;
    const char* sourcePath;
    const char* targetPath;
};

// The bar moves after the first block and then whenever another hundredth of the file
// has gone by, so a huge file costs about a hundred repaints however many blocks it has.
int CopyBlocks(const CopyJob& job, char* buffer) {
    const long long step = job.size / 100;
    long long copied = 0;
    long long threshold = 0;
    while (copied < job.size) {
        const ssize_t got = read(job.source, buffer, kBlockSize);
        if (got == 0) break;  // the source ended early: not an error
        if (got < 0) return Fail("Read error: ", job.sourcePath, static_cast<int>(got));
        if (write(job.target, buffer, static_cast<size_t>(got)) != got) {
            return Fail("Write error: ", job.targetPath, -5);
        }
        copied += got;
        if (copied > threshold) {
            Report(job.text,
                   job.start + static_cast<float>(double(copied) / double(job.size)) * job.share);
            threshold += step;
        }
    }
    return 0;
}

// The target must hold exactly the source's bytes (an older, longer target must not
// keep its tail) and must have reached storage before the copy is reported done: a
// firmware image that a power cut can undo is not copied.
// Only regular files are cut to length: a partition or other device node keeps its
// size, and one that cannot be synchronised at all (EINVAL) has nothing to flush.
int Finish(const CopyJob& job) {
    struct stat status;
    if (fstat(job.target, &status) != 0) return Fail("Write error: ", job.targetPath, -5);
    if (S_ISREG(status.st_mode)) {
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
    const float start = StartingPercent();
    Descriptor in(open(source, O_RDONLY));
    if (in.fd < 0) return Fail("Cannot open input file ", source, in.fd);
    Descriptor out(target ? open(target, O_WRONLY | O_CREAT, 0644) : -1);
    if (out.fd < 0) return Fail("Cannot open output file ", target ? target : "(null)", -1);

    const CopyJob job{in.fd, out.fd, status.st_size, start, share, text, source, target};
    int result = job.size > 0 ? CopyBlocks(job, buffer.get()) : 0;
    if (result == 0) result = Finish(job);
    if (result != 0) return result;
    Report(text, start + share);
    return 0;
}

}  // namespace

int CopyFileWithProgress(const char* source, const char* target, const char* text, float share) {
    return Guarded("CopyFileWithProgress", -1, [&] { return Copy(source, target, text, share); });
}
