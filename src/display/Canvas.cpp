// SPDX-License-Identifier: MIT
#include "vantor/Canvas.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

namespace Vantor {

namespace {

// Objects may sit anywhere an int reaches; sums of positions, sizes and margins are
// taken in 64 bits and pinned to the int range instead of wrapping.
int Pinned(long long value) {
    return static_cast<int>(std::min<long long>(std::max<long long>(value, INT_MIN), INT_MAX));
}

// Both buffers start on a cache line. A canvas row is copied to and from screen memory
// (page-aligned) as one block, and how fast the C library copies a block depends on
// where its two ends lie: the buffer that new[] gave put every row of a full-screen
// canvas 16 bytes past the screen's, which is one of the slow distances. Aligned, a
// full-width canvas at column 0 meets the screen at a multiple of 64 bytes; the row
// copies keep clear of the slow distances for every other position (PixelFormat.cpp).
const std::align_val_t kLineAlignment{64};

// Zero-filled, as the pixel count says; a count whose bytes do not fit the address
// space fails as an allocation error, as new[] would, instead of wrapping.
uint32_t* NewPixels(size_t count) {
    if (count > SIZE_MAX / sizeof(uint32_t)) throw std::bad_array_new_length();
    void* memory = ::operator new[](count * sizeof(uint32_t), kLineAlignment);
    std::memset(memory, 0, count * sizeof(uint32_t));
    return static_cast<uint32_t*>(memory);
}

void DeletePixels(uint32_t*& pixels) {
    ::operator delete[](pixels, kLineAlignment);
    pixels = nullptr;
}

}  // namespace

CCanvas::CCanvas()
    : frame(CPoint(-1, -1), CPoint(-1, -1)),
      pPixels(nullptr),
      pBackground(nullptr),
      modified(false),
      background(0) {}

CCanvas::CCanvas(int x, int y, int width, int height)
    : frame(x, y, width, height),
      pPixels(nullptr),
      pBackground(nullptr),
      modified(false),
      background(0) {
    AllocateBuffers();
}

CCanvas::~CCanvas() {
    DeleteObjects();
    ReleaseBuffers();
}

void CCanvas::ReleaseBuffers() {
    DeletePixels(pPixels);
    DeletePixels(pBackground);
}

// Buffers always match the frame, which is never smaller than one pixel; the product is
// taken in size_t so a huge request fails as an allocation error instead of wrapping.
void CCanvas::AllocateBuffers() {
    const size_t count = static_cast<size_t>(getWidth()) * static_cast<size_t>(getHeight());
    uint32_t* pixels = NewPixels(count);
    try {
        pBackground = NewPixels(count);
    } catch (...) {
        DeletePixels(pixels);
        throw;
    }
    pPixels = pixels;
}

// A plain store loop over a screen-sized buffer ran at a sixth of the C library's
// memset on our x86-64 machines, which store wider and skip reading the lines first.
// Black (every byte alike) is one memset; other colours fill one 4 KiB block and copy
// it on, which costs little more.
void CCanvas::FillPixels(uint32_t value) {
    if (pPixels == nullptr) return;
    const size_t count = static_cast<size_t>(getWidth()) * getHeight();
    if (value == (value & 0xFFu) * 0x01010101u) {
        std::memset(pPixels, int(value & 0xFFu), count * sizeof(uint32_t));
        return;
    }
    const size_t block = std::min<size_t>(count, 1024);
    std::fill_n(pPixels, block, value);
    for (size_t done = block; done < count; done += block) {
        std::memcpy(pPixels + done, pPixels, std::min(block, count - done) * sizeof(uint32_t));
    }
}

void CCanvas::DeleteObjects() {
    while (!objects.empty()) {
        CGObj* object = objects.front();
        objects.pop_front();
        delete object;
    }
}

void CCanvas::setSize(int width, int height) {
    width = std::max(width, 1);
    height = std::max(height, 1);
    if (pPixels != nullptr && width == getWidth() && height == getHeight()) {
        if (pBackground == nullptr) {
            pBackground = NewPixels(static_cast<size_t>(width) * height);
        }
        modified = true;
        return;
    }
    ReleaseBuffers();
    frame = CFrame(frame.topLeft.x, frame.topLeft.y, width, height);
    AllocateBuffers();
    modified = true;
}

void CCanvas::setOffset(int x, int y) {
    if (frame.topLeft == CPoint(x, y)) return;
    frame = CFrame(x, y, getWidth(), getHeight());
    modified = true;
}

int CCanvas::getFootprint(CFrame& footprint) {
    if (objects.empty()) {
        footprint = CFrame(CPoint(0, 0), CPoint(0, 0));
        return -1;
    }
    footprint = CFrame(CPoint(INT_MAX, INT_MAX), CPoint(INT_MIN, INT_MIN));
    for (CGObj* object : objects) {
        int width = 0;
        int height = 0;
        CPoint position;
        object->getSize(width, height);
        object->getPosition(position);
        footprint.topLeft.x = std::min(footprint.topLeft.x, position.x);
        footprint.topLeft.y = std::min(footprint.topLeft.y, position.y);
        footprint.bottomRight.x =
            std::max(footprint.bottomRight.x, Pinned(static_cast<long long>(position.x) + width));
        footprint.bottomRight.y =
            std::max(footprint.bottomRight.y, Pinned(static_cast<long long>(position.y) + height));
    }
    return 0;
}

int CCanvas::Resize(CFrame& footprint, int margin) {
    const CPoint origin = frame.topLeft;
    footprint.bottomRight.x = Pinned(footprint.bottomRight.x + 2LL * margin);
    footprint.bottomRight.y = Pinned(footprint.bottomRight.y + 2LL * margin);
    if (objects.empty()) return 0;
    for (CGObj* object : objects) {
        CPoint position;
        object->getPosition(position);
        object->setPosition(
            CPoint(Pinned(static_cast<long long>(position.x) - footprint.topLeft.x + margin),
                   Pinned(static_cast<long long>(position.y) - footprint.topLeft.y + margin)));
    }
    setSize(footprint.getWidth(), footprint.getHeight());
    setOffset(origin.x, origin.y);
    modified = true;
    return 0;
}

int CCanvas::Autoresize(int margin) {
    CFrame footprint;
    if (getFootprint(footprint) != 0) return -1;
    return Resize(footprint, margin);
}

void CCanvas::Refresh() {
    FillPixels(background.value);
    for (CGObj* object : objects) object->Draw(*this);
}

void CCanvas::Clear() {
    FillPixels(background.value);
    DeleteObjects();
}

}  // namespace Vantor
