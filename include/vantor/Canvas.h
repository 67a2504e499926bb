// SPDX-License-Identifier: MIT
#ifndef VANTOR_CANVAS_H
#define VANTOR_CANVAS_H

#include <stdint.h>

#include <list>

#include "vantor/Export.h"
#include "vantor/Frame.h"
#include "vantor/GObj.h"
#include "vantor/Point.h"
#include "vantor/RGBA24.h"
#include "vantor/Screen.h"

namespace Vantor {

// An off-screen surface of 32-bit pixels with a place on the screen. It owns a list of
// drawable objects and redraws them on request; a second buffer keeps the screen
// pixels it covers so they can be put back when the canvas goes away.
class VANTOR_API CCanvas {
  public:
    CCanvas();
    CCanvas(int x, int y, int width, int height);
    virtual ~CCanvas();
    CCanvas(const CCanvas&) = delete;
    CCanvas& operator=(const CCanvas&) = delete;

    int getWidth() const { return frame.getWidth(); }
    int getHeight() const { return frame.getHeight(); }

    // Size and place.
    void setSize(int width, int height);
    void setOffset(int x, int y);
    virtual int getFootprint(CFrame& footprint);
    int Resize(CFrame& footprint, int margin);
    int Autoresize(int margin);

    // Object list.
    void Refresh();
    void Clear();

    // Pixel operations, all in canvas-local coordinates and clipped to the canvas.
    bool Contains(int x, int y) const;
    bool Contains(const CPoint& p) const { return Contains(p.x, p.y); }
    int setPoint(int x, int y, const CRGBA24& colour);
    int setPoint(const CPoint& p, const CRGBA24& colour) { return setPoint(p.x, p.y, colour); }
    int clearPoint(const CPoint& p);
    int setLine(const CPoint& a, const CPoint& b, int width, const CRGBA24& colour);
    int setGlyph(const CPoint& p, unsigned int* bits, int width, int height, const CRGBA24& colour);
    void NormalizePoint(int& x, int& y) const;
    void NormalizePoint(CPoint& p) const { NormalizePoint(p.x, p.y); }
    void NormalizeRectangle(int& x1, int& y1, int& x2, int& y2) const;
    void NormalizeRectangle(CPoint& a, CPoint& b) const { NormalizeRectangle(a.x, a.y, b.x, b.y); }
    int setRectangle(const CPoint& a, const CPoint& b, const CRGBA24& colour);
    int setRectangleFrame(const CPoint& a, const CPoint& b, const CRGBA24& colour);
    // Row-wise forms of many setPoint calls, with the same clipping and the same effect
    // on `modified`. Coordinates are 64-bit so that far edges computed from positions
    // near the int limits need no overflow care by the caller. Both return -2 when no
    // pixel lies on the canvas, else 0.
    // setArea fills the half-open area [left, right) x [top, bottom).
    int setArea(long long left, long long top, long long right, long long bottom,
                const CRGBA24& colour);
    // setBitmap writes a width x height byte map with its top-left at (x, y): a non-zero
    // byte takes the foreground colour, a zero byte the background colour.
    int setBitmap(long long x, long long y, const unsigned char* bitmap, int width, int height,
                  const CRGBA24& foreground, const CRGBA24& background);

    // Transfers between the canvas and a screen; everything off the screen is skipped.
    // The background buffer holds the screen's own pixel values, so restoring gives
    // back its exact bytes in any layout. The triple forms take plain memory of
    // 0x00RRGGBB pixels in rows of screenWidth.
    void SaveBackground(const CScreen& screen);
    void RestoreBackground(const CScreen& screen);
    int Paint(const CPoint& a, const CPoint& b, const CScreen& screen);
    int Paint(const CScreen& screen);
    void SaveBackground(unsigned int* screen, int screenWidth, int screenHeight);
    void RestoreBackground(unsigned int* screen, int screenWidth, int screenHeight);
    int Paint(const CPoint& a, const CPoint& b, unsigned int* screen, int screenWidth,
              int screenHeight);
    int Paint(unsigned int* screen, int screenWidth, int screenHeight);

    CFrame frame;
    uint32_t* pPixels;
    uint32_t* pBackground;
    bool modified;
    CRGBA24 background;
    std::list<CGObj*> objects;

  private:
    void ReleaseBuffers();
    void AllocateBuffers();
    void FillPixels(uint32_t value);
    void DeleteObjects();
};

}  // namespace Vantor

#endif
