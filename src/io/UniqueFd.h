// SPDX-License-Identifier: MIT
#ifndef VANTOR_UNIQUEFD_H
#define VANTOR_UNIQUEFD_H

#include <sys/types.h>

namespace Vantor {

// The one owner of an open descriptor: it is closed exactly once, on whatever way out,
// and passed on by moving, never copied. Every number from 0 up is a descriptor: a
// daemon started with its standard input closed gets 0 for the first file it opens,
// and that file must be used and closed like any other.
class UniqueFd {
  public:
    UniqueFd() = default;
    explicit UniqueFd(int descriptor) : fd(descriptor) {}
    ~UniqueFd() { Reset(); }
    UniqueFd(UniqueFd&& other) noexcept : fd(other.Release()) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept;
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;

    // Opens with close-on-exec, so a program the host starts never inherits the file;
    // one attempt, as open itself. Empty on failure, with errno as open left it.
    static UniqueFd Open(const char* path, int flags, mode_t mode = 0);

    int Get() const { return fd; }
    bool IsOpen() const { return fd >= 0; }
    // Gives the descriptor up without closing it; the caller owns it from now on.
    int Release();
    // Closes what is held (if anything) and holds the new descriptor instead.
    void Reset(int descriptor = -1);
    // Closes now and says whether the kernel reported a late write error. An
    // interrupted close has still closed the descriptor on Linux and is not retried.
    bool Close();

  private:
    int fd = -1;
};

}  // namespace Vantor

#endif
