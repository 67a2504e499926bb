// SPDX-License-Identifier: MIT
#include "CopyProgress.h"
#include "vantor.h"
#include "vantor/Context.h"
#include "vantor/Progress.h"
#include "vantor/ProgressBar.h"

namespace Vantor {

namespace {

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

}  // namespace

CopyProgress::CopyProgress(const char* text, float share, long long size, int passes)
    : text(text),
      start(StartingPercent()),
      passStart(start),
      passShare(share / passes),
      total(share),
      size(size),
      threshold(0) {}

void CopyProgress::NextPass() {
    passStart += passShare;
    threshold = 0;
}

void CopyProgress::Advance(long long copied) {
    if (copied <= threshold) return;
    Report(text, passStart + static_cast<float>(double(copied) / double(size)) * passShare);
    threshold += size / 100;
}

void CopyProgress::Finish() const {
    Report(text, start + total);
}

}  // namespace Vantor
