// SPDX-License-Identifier: MIT
// Sizes and offsets are 64-bit on every target: firmware images pass 2 GiB.
#define _FILE_OFFSET_BITS 64

#include "FileCopier.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "Boundary.h"
#include "CopyCancel.h"
#include "vantor.h"

namespace Vantor {

namespace {

std::string DirectoryOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// Writing through a symbolic link replaces the file it names, not the link.
std::string Resolved(const char* path) {
    struct stat status;
    if (lstat(path, &status) != 0 || !S_ISLNK(status.st_mode)) return path;
    char* real = realpath(path, nullptr);
    if (real == nullptr) return path;
    std::string result(real);
    free(real);
    return result;
}

// What a source without a length is, for the line that refuses it.
const char* KindOf(mode_t mode) {
    if (S_ISFIFO(mode)) return "a pipe";
    if (S_ISCHR(mode)) return "a character device";
    if (S_ISSOCK(mode)) return "a socket";
    return "a file that reports no length";
}

// The file systems that cannot make an unnamed file (vfat on older kernels, some
// network and FUSE ones) say so in one of these ways; any other error is the
// directory's own and a named file would meet it too.
bool UnnamedUnsupported(int error) {
    return error == EOPNOTSUPP || error == EISDIR || error == EINVAL;
}

}  // namespace

FileCopier::FileCopier(const char* source, const char* target, const char* text, float share,
                       int flags)
    : sourcePath(source),
      targetPath(target),
      text(text),
      share(share),
      verify((flags & VANTOR_COPY_VERIFY) != 0),
      replacing(false),
      unnamed(false),
      partOwned(false),
      engine(CopyEngine::kWhole, CopyCancelRequested),
      size(0) {}

// A copy that did not reach the rename leaves no trace of its temporary file.
FileCopier::~FileCopier() {
    if (partOwned) unlink(partPath.c_str());
}

// An empty path is shown as such, or the line would read as if the path were missing.
int FileCopier::Fail(const char* what, const std::string& path, int error) const {
    std::cerr << what << (path.empty() ? "\"\"" : path) << ": " << std::strerror(error)
              << std::endl;
    return -error;
}

// A stop asked for by CancelCopy is answered once, then forgotten.
int FileCopier::Cancelled() const {
    ClearCopyCancel();
    return Fail("Copy stopped: ", targetPath, ECANCELED);
}

int FileCopier::Run() {
    if (sourcePath == nullptr) return Fail("Cannot open input file ", "(null)", EINVAL);
    if (targetPath == nullptr) return Fail("Cannot open output file ", "(null)", EINVAL);
    if (!engine.Allocate()) return Fail("Cannot open input file ", sourcePath, ENOMEM);
    CopyProgress progress(text, share, 0);
    int result = OpenSource();
    if (result == 0) result = OpenTarget();
    if (result != 0) return result;
    progress = CopyProgress(text, share, size, verify ? 2 : 1);
    result = CopyData(progress);
    if (result == 0 && verify) result = Verify(progress);
    if (result == 0 && CopyCancelRequested()) result = Cancelled();
    if (result == 0) result = Commit();
    if (result == 0) progress.Finish();
    return result;
}

int FileCopier::OpenSource() {
    // Without O_NONBLOCK a pipe with no writer would hold the open for ever, before we
    // could see that it is a pipe; the reads that follow are blocking again.
    in = engine.Open(sourcePath, O_RDONLY | O_NONBLOCK);
    if (!in.IsOpen()) return Fail("Cannot open input file ", sourcePath, errno);
    fcntl(in.Get(), F_SETFL, fcntl(in.Get(), F_GETFL) & ~O_NONBLOCK);
    struct stat status;
    if (fstat(in.Get(), &status) != 0) return Fail("Cannot acquire file stat ", sourcePath, errno);
    return SizeSource(status);
}

// Only a source whose length is known can be copied: a partition by its device size,
// a regular file by its status. A directory, a pipe or a character device has none,
// and neither has a /proc or /sys file (size 0, yet it reads data).
int FileCopier::SizeSource(const struct stat& status) {
    if (S_ISDIR(status.st_mode)) return Fail("Cannot size input file ", sourcePath, EISDIR);
    if (S_ISBLK(status.st_mode)) {
        unsigned long long bytes = 0;
        if (ioctl(in.Get(), BLKGETSIZE64, &bytes) != 0) {
            return Fail("Cannot size input file ", sourcePath, errno);
        }
        if (bytes > static_cast<unsigned long long>(LLONG_MAX)) {
            return Fail("Cannot size input file ", sourcePath, EFBIG);
        }
        size = static_cast<long long>(bytes);
        return 0;
    }
    size = status.st_size;
    if (S_ISREG(status.st_mode) && (size > 0 || engine.Read(in.Get(), engine.Buffer(), 1) == 0))
        return 0;
    std::cerr << "Cannot size input file " << sourcePath << ": " << std::strerror(EINVAL) << " ("
              << KindOf(status.st_mode) << ", not a regular file or a partition)" << std::endl;
    return -EINVAL;
}

int FileCopier::OpenTarget() {
    if (*targetPath == '\0') return Fail("Cannot open output file ", targetPath, ENOENT);
    finalPath = Resolved(targetPath);
    struct stat status;
    if (stat(finalPath.c_str(), &status) != 0) {
        if (errno != ENOENT) return Fail("Cannot open output file ", targetPath, errno);
        return CreateTemporary(0644, nullptr);
    }
    if (S_ISDIR(status.st_mode)) return Fail("Cannot open output file ", targetPath, EISDIR);
    if (S_ISREG(status.st_mode)) return CreateTemporary(status.st_mode & 07777, &status);
    // A FIFO without a reader would hold a blocking open for ever.
    out = engine.Open(finalPath.c_str(), O_WRONLY | O_NONBLOCK);
    if (!out.IsOpen()) return Fail("Cannot open output file ", targetPath, errno);
    fcntl(out.Get(), F_SETFL, fcntl(out.Get(), F_GETFL) & ~O_NONBLOCK);
    unsigned long long capacity = 0;
    if (S_ISBLK(status.st_mode) && ioctl(out.Get(), BLKGETSIZE64, &capacity) == 0 &&
        capacity < static_cast<unsigned long long>(size)) {
        return Fail("Write error: ", targetPath, ENOSPC);  // refused before a byte is written
    }
    return 0;
}

// The temporary file lives beside the target (a rename cannot cross file systems) and
// takes over the old target's permission bits and, where allowed, its owner. Its lock
// tells a second copy to the same target that this one is still at work.
int FileCopier::CreateTemporary(mode_t mode, const struct stat* old) {
    replacing = true;
    const std::string directory = DirectoryOf(finalPath);
    // Cut to fit a name's limit: a target with the longest name allowed is still copied.
    const std::string base = finalPath.substr(finalPath.rfind('/') + 1);
    partPath = directory + "/." + base.substr(0, NAME_MAX - 6) + ".part";
    const int removed = RemoveStalePart();
    if (removed != 0) return removed;
    out = engine.Open(directory.c_str(), O_TMPFILE | O_RDWR, mode);
    unnamed = out.IsOpen();
    if (!unnamed) {
        if (!UnnamedUnsupported(errno)) return CreateFailure(errno, old != nullptr);
        out = engine.Open(partPath.c_str(), O_RDWR | O_CREAT | O_EXCL, mode);
        if (!out.IsOpen()) return CreateFailure(errno == EEXIST ? EBUSY : errno, old != nullptr);
        partOwned = true;
    }
    flock(out.Get(), LOCK_EX | LOCK_NB);
    if (old != nullptr) {
        if (fchown(out.Get(), old->st_uid, old->st_gid) != 0) {
            // Only root may give a file away; the copy then belongs to us, as it would
            // after any rewrite by this user.
        }
        fchmod(out.Get(), mode);
    }
    return 0;
}

// What an interrupted copy left under the temporary name goes now, unless a copy that
// is still running holds it.
int FileCopier::RemoveStalePart() {
    struct stat status;
    if (lstat(partPath.c_str(), &status) != 0) return 0;
    if (S_ISREG(status.st_mode)) {
        const UniqueFd stale = engine.Open(partPath.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
        if (stale.IsOpen() && flock(stale.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
            return Fail("Cannot open output file ", targetPath, EBUSY);
        }
    }
    if (unlink(partPath.c_str()) != 0 && errno != ENOENT) {
        return Fail("Cannot open output file ", targetPath, errno);
    }
    return 0;
}

// A directory where no file may be made (/proc, a read-only mount) would otherwise be
// reported as the temporary file's failure; the target's own refusal says more, and a
// "no such file" for a target that exists names the file that could not be made.
int FileCopier::CreateFailure(int error, bool targetExists) const {
    const UniqueFd direct = engine.Open(finalPath.c_str(), O_WRONLY | O_NONBLOCK);
    if (!direct.IsOpen() && errno != ENOENT)
        return Fail("Cannot open output file ", targetPath, errno);
    if (error == ENOENT && targetExists)
        return Fail("Cannot create temporary file ", partPath, error);
    return Fail("Cannot open output file ", targetPath, error);
}

int FileCopier::CopyData(CopyProgress& progress) {
    return Answer(engine.Copy(in.Get(), out.Get(), size, progress));
}

// The line and result of a pass over the blocks that stopped short.
int FileCopier::Answer(const CopyFault& fault) const {
    switch (fault.side) {
        case CopyFault::kNone:
            return 0;
        case CopyFault::kStopped:
            return Cancelled();
        case CopyFault::kRead:
            return Fail("Read error: ", sourcePath, fault.error);
        case CopyFault::kWrite:
            return Fail("Write error: ", targetPath, fault.error);
        case CopyFault::kCheck:
            break;
    }
    return Fail("Verify error: ", targetPath, fault.error);
}

// Reads the target back from storage, not from the page cache, and compares it with
// a second reading of the source.
int FileCopier::Verify(CopyProgress& progress) {
    progress.NextPass();
    const int synced = engine.Sync(out.Get());
    if (synced != 0) return Fail("Write error: ", targetPath, -synced);
    // The temporary file is read through a second descriptor of its own: it may have
    // no name to open.
    const UniqueFd back = replacing ? UniqueFd(fcntl(out.Get(), F_DUPFD_CLOEXEC, 0))
                                    : engine.Open(finalPath.c_str(), O_RDONLY);
    if (!back.IsOpen() || lseek(back.Get(), 0, SEEK_SET) != 0) {
        return Fail("Verify error: ", targetPath, errno);
    }
    posix_fadvise(back.Get(), 0, 0, POSIX_FADV_DONTNEED);
    if (lseek(in.Get(), 0, SEEK_SET) != 0) return Fail("Read error: ", sourcePath, errno);
    return Answer(engine.Compare(in.Get(), back.Get(), size, progress));
}

// Nothing counts as copied until it is on storage: the file's data, then (for a
// temporary file) its new name in the directory. A device that cannot be synced at
// all (EINVAL) has nothing to flush. The rename comes while the lock is still held.
int FileCopier::Commit() {
    const int synced = engine.Sync(out.Get());
    if (synced != 0) return Fail("Write error: ", targetPath, -synced);
    if (replacing) {
        const int linked = unnamed ? LinkPart() : 0;
        if (linked != 0) return linked;
        if (rename(partPath.c_str(), finalPath.c_str()) != 0) {
            return Fail("Write error: ", targetPath, errno);
        }
        partOwned = false;
    }
    if (!out.Close()) return Fail("Write error: ", targetPath, errno);
    if (!replacing) return 0;
    const UniqueFd directory = engine.Open(DirectoryOf(finalPath).c_str(), O_RDONLY | O_DIRECTORY);
    if (!directory.IsOpen()) return Fail("Write error: ", DirectoryOf(finalPath), errno);
    const int dirSynced = engine.Sync(directory.Get());
    if (dirSynced != 0) {
        return Fail("Write error: ", DirectoryOf(finalPath), -dirSynced);
    }
    return 0;
}

// Linux cannot rename an unnamed file over another, so the complete copy first gets the
// temporary name, for the moment until the rename. Linking by descriptor needs a
// capability most users lack; the /proc link to the descriptor works for anyone.
int FileCopier::LinkPart() {
    if (linkat(out.Get(), "", AT_FDCWD, partPath.c_str(), AT_EMPTY_PATH) != 0) {
        const std::string self = "/proc/self/fd/" + std::to_string(out.Get());
        if (linkat(AT_FDCWD, self.c_str(), AT_FDCWD, partPath.c_str(), AT_SYMLINK_FOLLOW) != 0) {
            return Fail("Write error: ", targetPath, errno);
        }
    }
    partOwned = true;
    return 0;
}

}  // namespace Vantor

int CopyFileWithProgressEx(const char* source, const char* target, const char* text, float share,
                           int flags) {
    using namespace Vantor;
    return Guarded("CopyFileWithProgressEx", -ENOMEM, [&] {
        if ((flags & ~VANTOR_COPY_VERIFY) != 0) {
            std::cerr << "CopyFileWithProgressEx: unknown flags: " << std::strerror(EINVAL)
                      << std::endl;
            return -EINVAL;
        }
        FileCopier copier(source, target, text, share, flags);
        return copier.Run();
    });
}
