// What the two file copy calls share: an owned descriptor and the progress bar's cadence.
#ifndef VANTOR_COPYSUPPORT_H
#define VANTOR_COPYSUPPORT_H

#include <unistd.h>

#include <cerrno>

namespace Vantor {

// Owns a descriptor so that every way out of a copy closes it exactly once.
class Descriptor {
  public:
    explicit Descriptor(int value) : fd(value) {}
    ~Descriptor() {
        if (fd >= 0) close(fd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    // Closes now and says whether the kernel reported a late write error. An
    // interrupted close has still closed the descriptor on Linux and is not retried.
    bool Close() {
        const int result = fd >= 0 ? close(fd) : 0;
        fd = -1;
        return result == 0 || errno == EINTR;
    }
    int fd;
};

// Moves the progress window's bar (if there is one) from where it stood through a
// share of the scale: after the first block and then whenever another hundredth of
// the size has gone by, so a huge file costs about a hundred repaints.
class CopyProgress {
  public:
    // Several passes over the same size (a copy and its read-back) split the share.
    CopyProgress(const char* text, float share, long long size, int passes = 1);
    void NextPass();
    void Advance(long long copied);
    void Finish() const;

  private:
    const char* text;
    float start;
    float passStart;
    float passShare;
    float total;
    long long size;
    long long threshold;
};

}  // namespace Vantor

#endif
