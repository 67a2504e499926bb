// SPDX-License-Identifier: MIT
#include "vantor/Progress.h"

#include "vantor/AsciiText.h"
#include "vantor/ProgressBar.h"

namespace Vantor {

CProgress::CProgress(CBitmapFont& f, const char* text, int x, int y, int width, int height)
    : CCanvas(x, y, width, height), font(f), pBar(nullptr), pText(nullptr) {
    AddBar();
    AddText(text);
}

CProgress::~CProgress() {
    // The canvas owns both objects and deletes them after this.
    pBar = nullptr;
    pText = nullptr;
}

void CProgress::AddBar() {
    pBar = new CProgressBar(kInset, getHeight() - kInset - kBarHeight, getWidth() - 2 * kInset,
                            kBarHeight);
    objects.push_back(pBar);
}

void CProgress::AddText(const char* text) {
    pText = new CAsciiText(text, font, CPoint(kInset, kInset));
    objects.push_back(pText);
}

void CProgress::setProgress(float percent) {
    if (pBar == nullptr) AddBar();
    pBar->setProgress(percent);  // the bar clamps to 0..100 and turns NaN into 0
    pBar->Draw(*this);
}

// The old text's box is painted over first so a shorter text leaves no trace of a
// longer one.
void CProgress::setText(const char* text, eAlignMode alignment) {
    if (pText != nullptr) {
        pText->Clear(*this);
        pText->setText(text);
    } else {
        AddText(text);
    }
    pText->setAlignment(alignment);
    pText->Draw(*this);
}

int CProgress::ShowProgress(const CScreen& screen) {
    Refresh();
    SaveBackground(screen);
    Paint(screen);
    return 0;
}

int CProgress::ShowProgress(unsigned int* screen, int screenWidth, int screenHeight) {
    return ShowProgress(CScreen(screen, screenWidth, screenHeight));
}

int CProgress::PaintProgress(unsigned int* screen, int screenWidth, int screenHeight) {
    return PaintProgress(CScreen(screen, screenWidth, screenHeight));
}

int CProgress::PaintProgress(const CScreen& screen) {
    if (pBar == nullptr) return -2;
    CPoint at;
    int width = 0;
    int height = 0;
    pBar->getPosition(at);
    pBar->getSize(width, height);
    Paint(at, CPoint(at.x + width, at.y + height), screen);
    return 0;
}

void CProgress::Clear() {
    pBar = nullptr;
    pText = nullptr;
    CCanvas::Clear();
}

}  // namespace Vantor
