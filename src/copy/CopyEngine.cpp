// SPDX-License-Identifier: MIT
// Sizes and offsets are 64-bit on every target: firmware images pass 2 GiB.
#define _FILE_OFFSET_BITS 64

#include "CopyEngine.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

namespace Vantor {

CopyEngine::CopyEngine(Transfer transfer, bool (*stopRequested)())
    : transfer(transfer), stopRequested(stopRequested) {}

bool CopyEngine::Allocate() {
    buffer.reset(new (std::nothrow) char[kBlockSize]);
    return buffer != nullptr;
}

UniqueFd CopyEngine::Open(const char* path, int flags, mode_t mode) const {
    UniqueFd opened = UniqueFd::Open(path, flags, mode);
    while (transfer == kWhole && !opened.IsOpen() && errno == EINTR) {
        opened = UniqueFd::Open(path, flags, mode);
    }
    return opened;
}

long long CopyEngine::Read(int fd, char* into, size_t wanted) const {
    size_t got = 0;
    while (got < wanted) {
        const ssize_t result = read(fd, into + got, wanted - got);
        if (result < 0 && errno == EINTR && transfer == kWhole) continue;
        if (result < 0) return -errno;
        if (result == 0 || transfer == kOneCall) return static_cast<long long>(result) + got;
        got += static_cast<size_t>(result);
    }
    return static_cast<long long>(got);
}

// A write that moves nothing at all would loop for ever and is an I/O error instead.
int CopyEngine::Write(int fd, const char* data, size_t length) const {
    while (length > 0) {
        const ssize_t result = write(fd, data, length);
        if (result < 0 && errno == EINTR && transfer == kWhole) continue;
        if (result < 0) return -errno;
        if (result == 0 || (transfer == kOneCall && size_t(result) != length)) return -EIO;
        data += result;
        length -= static_cast<size_t>(result);
    }
    return 0;
}

int CopyEngine::Sync(int fd) const {
    int result = fsync(fd);
    while (result != 0 && errno == EINTR && transfer == kWhole) result = fsync(fd);
    if (result == 0 || errno == EINVAL) return 0;
    return -errno;
}

// A kWhole pass never reads past the size; the older call always asks for a whole block.
size_t CopyEngine::NextBlock(long long done, long long size) const {
    return transfer == kWhole ? size_t(std::min<long long>(kBlockSize, size - done)) : kBlockSize;
}

CopyFault CopyEngine::Copy(int source, int target, long long size, CopyProgress& progress) {
    long long copied = 0;
    while (copied < size) {
        if (Stopped()) return {CopyFault::kStopped, ECANCELED};
        const long long got = Read(source, buffer.get(), NextBlock(copied, size));
        if (got < 0) return {CopyFault::kRead, int(-got)};
        // Under kWhole a source that ends before its size has changed under us: not a
        // whole copy.
        if (got == 0) return transfer == kWhole ? CopyFault{CopyFault::kRead, EIO} : CopyFault{};
        const int written = Write(target, buffer.get(), size_t(got));
        if (written != 0) return {CopyFault::kWrite, -written};
        copied += got;
        progress.Advance(copied);
    }
    return CopyFault{};
}

CopyFault CopyEngine::Compare(int source, int copy, long long size, CopyProgress& progress) {
    std::unique_ptr<char[]> readBack(new (std::nothrow) char[kBlockSize]);
    if (!readBack) return {CopyFault::kCheck, ENOMEM};
    for (long long checked = 0; checked < size;) {
        if (Stopped()) return {CopyFault::kStopped, ECANCELED};
        const size_t wanted = NextBlock(checked, size);
        const long long original = Read(source, buffer.get(), wanted);
        if (original != static_cast<long long>(wanted)) {
            return {CopyFault::kRead, original < 0 ? int(-original) : EIO};
        }
        const long long got = Read(copy, readBack.get(), wanted);
        if (got < 0) return {CopyFault::kCheck, int(-got)};
        if (got != original || std::memcmp(buffer.get(), readBack.get(), wanted) != 0) {
            return {CopyFault::kCheck, EIO};
        }
        checked += original;
        progress.Advance(checked);
    }
    return CopyFault{};
}

}  // namespace Vantor
