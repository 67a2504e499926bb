// SPDX-License-Identifier: MIT
#ifndef VANTOR_COPYENGINE_H
#define VANTOR_COPYENGINE_H

#include <sys/types.h>

#include <cstddef>
#include <memory>

#include "CopyProgress.h"
#include "io/UniqueFd.h"

namespace Vantor {

// Where a pass over the blocks stopped short, and why (an errno value): reading the
// source, writing the target, reading the target back (or finding it different), or
// asked to stop.
struct CopyFault {
    enum Side { kNone, kRead, kWrite, kCheck, kStopped };
    Side side = kNone;
    int error = 0;
};

// The one place where file data moves: blocks of 1 MiB read from one descriptor and
// written to another, the bar advanced after each, and the target synced. Both copy
// calls run on it; how a transfer meets a signal or a short count is the one thing in
// which they differ, and the caller chooses it.
class CopyEngine {
  public:
    enum Transfer {
        // Each transfer is carried through: a signal or a short count means "go on",
        // the copy never reads past the size it was given, a source that ends before
        // that size is a read fault, and a stop request is honoured between blocks.
        kWhole,
        // One call per step, its result taken as it comes: a short write is a write
        // fault, a read may be short, and a source that ends early ends the copy
        // without a fault. The older copy call has always behaved so.
        kOneCall,
    };

    static const size_t kBlockSize = 1048576;

    // stopRequested, asked before each block of a kWhole copy, may be null.
    explicit CopyEngine(Transfer transfer, bool (*stopRequested)() = nullptr);

    // The block buffer; false when there is no memory for it.
    bool Allocate();
    char* Buffer() const { return buffer.get(); }

    UniqueFd Open(const char* path, int flags, mode_t mode = 0) const;
    // Up to `wanted` bytes (all of them unless the file ends, for kWhole): the count
    // read, or -errno.
    long long Read(int fd, char* into, size_t wanted) const;
    // 0, or -errno; a write that moves nothing, or (kOneCall) less than asked, is -EIO.
    int Write(int fd, const char* data, size_t length) const;
    // 0 once the file's data is on storage, or -errno. A descriptor that cannot be
    // synced at all (EINVAL: a pipe, some device nodes) has nothing to flush.
    int Sync(int fd) const;

    // Copies `size` bytes from where each descriptor stands.
    CopyFault Copy(int source, int target, long long size, CopyProgress& progress);
    // Reads `size` bytes from each and compares them: the source must give them all,
    // the copy must hold the same.
    CopyFault Compare(int source, int copy, long long size, CopyProgress& progress);

  private:
    bool Stopped() const { return stopRequested != nullptr && stopRequested(); }
    size_t NextBlock(long long done, long long size) const;

    Transfer transfer;
    bool (*stopRequested)();
    std::unique_ptr<char[]> buffer;
};

}  // namespace Vantor

#endif
