// SPDX-License-Identifier: MIT
// The copy behind CopyFileWithProgressEx: one that a full disk, a power cut or a signal
// cannot turn into a half-written file where a good one stood.
#ifndef VANTOR_FILECOPIER_H
#define VANTOR_FILECOPIER_H

#include <sys/stat.h>

#include <string>

#include "copy/CopyEngine.h"

namespace Vantor {

// A regular target is written to a temporary file beside it, synced and renamed into
// place, then its directory is synced: until the rename the old target is untouched,
// and on failure the temporary file is removed. Where the file system allows it the
// temporary file has no name until it is complete, so a process that dies mid-copy
// leaves nothing; elsewhere it has one fixed name per target, which the next copy to
// that target removes. A device target (a partition) is written in place. Every step
// answers 0 or -errno and prints its one line on failure.
class FileCopier {
  public:
    FileCopier(const char* source, const char* target, const char* text, float share, int flags);
    ~FileCopier();
    FileCopier(const FileCopier&) = delete;
    FileCopier& operator=(const FileCopier&) = delete;
    int Run();

  private:
    int OpenSource();
    int SizeSource(const struct stat& status);
    int OpenTarget();
    int CreateTemporary(mode_t mode, const struct stat* old);
    int RemoveStalePart();
    int CreateFailure(int error, bool targetExists) const;
    int LinkPart();
    int Cancelled() const;
    int CopyData(CopyProgress& progress);
    int Verify(CopyProgress& progress);
    int Answer(const CopyFault& fault) const;
    int Commit();
    int Fail(const char* what, const std::string& path, int error) const;

    const char* sourcePath;
    const char* targetPath;
    const char* text;
    float share;
    bool verify;
    std::string finalPath;
    std::string partPath;  // the temporary file's name, for a regular target
    bool replacing;        // a regular target: written aside, then renamed over
    bool unnamed;          // the temporary file has no name yet (O_TMPFILE)
    bool partOwned;        // a file at partPath is ours to remove
    CopyEngine engine;
    UniqueFd in;
    UniqueFd out;
    long long size;
};

}  // namespace Vantor

#endif
