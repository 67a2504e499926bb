// SPDX-License-Identifier: MIT
#ifndef VANTOR_COPYPROGRESS_H
#define VANTOR_COPYPROGRESS_H

namespace Vantor {

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
