// Canvas sizing and the pixel operations and screen transfers of a canvas.
#include <gtest/gtest.h>

#include <linux/fb.h>

#include <cstring>

#include "TestSupport.h"

#include "vantor/Canvas.h"
#include "vantor/PixelFormat.h"
#include "vantor/Rectangle.h"

using namespace Vantor;
using VantorTest::Screen;

TEST(Canvas, SizedCanvasHasZeroedBuffersAndMovesWithSetOffset) {
    CCanvas canvas(10, 20, 4, 3);
    EXPECT_EQ(CPoint(13, 22), canvas.frame.bottomRight);
    for (int i = 0; i < 12; ++i) EXPECT_EQ(0u, canvas.pPixels[i] | canvas.pBackground[i]);
    canvas.setOffset(10, 20);
    EXPECT_FALSE(canvas.modified);
    canvas.setOffset(100, 50);
    EXPECT_EQ(CPoint(103, 52), canvas.frame.bottomRight);
    EXPECT_TRUE(canvas.modified);
    canvas.pPixels[0] = 5;
    canvas.setSize(5, 3);  // both buffers anew, zeroed
    EXPECT_EQ(CPoint(104, 52), canvas.frame.bottomRight);
    for (int i = 0; i < 15; ++i) EXPECT_EQ(0u, canvas.pPixels[i] | canvas.pBackground[i]);

    CCanvas empty;
    EXPECT_EQ(nullptr, empty.pPixels);
    empty.setOffset(40, 30);
    EXPECT_EQ(CPoint(40, 30), empty.frame.bottomRight);
    EXPECT_EQ(-2, empty.setPoint(0, 0, CRGBA24(1)));  // no buffer yet: dropped, not written
}

TEST(Canvas, AutoresizeFitsObjectsWithMarginAndKeepsTopLeft) {
    CCanvas canvas(7, 9, 1, 1);
    EXPECT_EQ(-1, canvas.Autoresize(3));
    canvas.objects.push_back(new CRectangle(5, 5, 30, 10, 0, 0));
    canvas.objects.push_back(new CRectangle(5, 23, 50, 10, 0, 0));
    ASSERT_EQ(0, canvas.Autoresize(3));
    CPoint first, second;
    canvas.objects.front()->getPosition(first);
    canvas.objects.back()->getPosition(second);
    EXPECT_EQ(CPoint(3, 3), first);
    EXPECT_EQ(CPoint(3, 21), second);
    EXPECT_EQ(CPoint(7, 9), canvas.frame.topLeft);
    EXPECT_EQ(57, canvas.getWidth());
    EXPECT_EQ(35, canvas.getHeight());
}

TEST(Canvas, PointsOutsideAreDroppedAndRectanglesAreHalfOpen) {
    CCanvas canvas(0, 0, 4, 3);
    EXPECT_TRUE(canvas.Contains(3, 2));
    EXPECT_FALSE(canvas.Contains(4, 0));
    EXPECT_FALSE(canvas.Contains(-1, 0));
    EXPECT_EQ(-2, canvas.setPoint(4, 0, CRGBA24(7)));
    EXPECT_FALSE(canvas.modified);

    int x1 = 8, y1 = -2, x2 = 1, y2 = 9;
    canvas.NormalizeRectangle(x1, y1, x2, y2);
    EXPECT_EQ(1, x1);
    EXPECT_EQ(0, y1);
    EXPECT_EQ(4, x2);
    EXPECT_EQ(3, y2);

    canvas.setRectangle(CPoint(0, 0), CPoint(2, 2), CRGBA24(9));
    const uint32_t filled[12] = {9, 9, 0, 0, 9, 9, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(0, std::memcmp(filled, canvas.pPixels, sizeof(filled)));
    EXPECT_EQ(-2, canvas.setLine(CPoint(0, 0), CPoint(3, 2), 1, CRGBA24(5)));
    EXPECT_EQ(0, canvas.setGlyph(CPoint(0, 0), nullptr, 1, 1, CRGBA24(5)));
    EXPECT_EQ(0, std::memcmp(filled, canvas.pPixels, sizeof(filled)));
}

TEST(Canvas, RectangleFrameClosesTheBoxOnBothGivenCorners) {
    CCanvas canvas(0, 0, 6, 5);
    canvas.setRectangleFrame(CPoint(1, 1), CPoint(4, 3), CRGBA24(1));
    const char* expected[] = {"......", ".####.", ".#..#.", ".####.", "......"};
    for (int y = 0; y < 5; ++y) {
        for (int x = 0; x < 6; ++x) {
            EXPECT_EQ(expected[y][x] == '#' ? 1u : 0u, canvas.pPixels[y * 6 + x]) << x << "," << y;
        }
    }
}

TEST(Canvas, TransfersTouchOnlyPixelsOnTheScreen) {
    Screen screen(10, 10);
    for (size_t i = 0; i < screen.pixels.size(); ++i) screen.pixels[i] = uint32_t(100 + i);
    CCanvas canvas(-2, -1, 4, 3);
    canvas.SaveBackground(screen.data(), 10, 10);
    const uint32_t saved[12] = {0, 0, 0, 0, 0, 0, 100, 101, 0, 0, 110, 111};
    EXPECT_EQ(0, std::memcmp(saved, canvas.pBackground, sizeof(saved)));

    canvas.background = CRGBA24(0xABCDEF);
    canvas.Refresh();
    canvas.modified = true;
    EXPECT_EQ(-2, canvas.Paint(CPoint(1, 1), CPoint(1, 2), screen.data(), 10, 10));
    EXPECT_EQ(0, canvas.Paint(screen.data(), 10, 10));
    EXPECT_FALSE(canvas.modified);
    EXPECT_EQ(0xABCDEFu, screen.at(1, 1));
    EXPECT_EQ(102u, screen.at(2, 0));
    canvas.RestoreBackground(screen.data(), 10, 10);
    EXPECT_EQ(111u, screen.at(1, 1));
}

// What a driver may declare: the layouts drawn by the shift path are accepted, anything
// that would put bits in the wrong place is refused.
TEST(PixelFormat, DeviceLayoutsAreAcceptedOnlyWhenEveryChannelFits) {
    struct Case {
        unsigned bits, red[2], green[2], blue[2], grayscale, msbRight;
        bool drawable;
        uint32_t white;  // 0xFFFFFF as the device stores it
    };
    const Case cases[] = {
        {16, {10, 5}, {5, 5}, {0, 5}, 0, 0, true, 0x7FFF},       // RGB555, X bit stays 0
        {32, {0, 0}, {0, 0}, {0, 0}, 0, 0, true, 0xFFFFFF},      // no bitfields: XRGB8888
        {32, {20, 10}, {10, 10}, {0, 10}, 0, 0, false, 0},       // 10-bit channels
        {16, {8, 8}, {5, 6}, {0, 5}, 0, 0, false, 0},            // overlapping channels
        {16, {11, 5}, {5, 6}, {0, 5}, 0x36314752, 0, false, 0},  // a FOURCC mode
        {16, {11, 5}, {5, 6}, {0, 5}, 0, 1, false, 0},           // reversed bit order
        {24, {20, 8}, {8, 8}, {0, 8}, 0, 0, false, 0},           // past the pixel's end
        {12, {8, 4}, {4, 4}, {0, 4}, 0, 0, false, 0},            // 12 bits per pixel
    };
    for (const Case& c : cases) {
        fb_var_screeninfo info = {};
        info.bits_per_pixel = c.bits;
        info.red = {c.red[0], c.red[1], c.msbRight};
        info.green = {c.green[0], c.green[1], 0};
        info.blue = {c.blue[0], c.blue[1], 0};
        info.grayscale = c.grayscale;
        CPixelFormat format;
        EXPECT_EQ(c.drawable, CPixelFormat::FromDevice(info, format)) << c.bits << " " << c.red[0];
        if (c.drawable) {
            EXPECT_EQ(c.white, format.Encode(0xFFFFFF));
        }
    }
}
