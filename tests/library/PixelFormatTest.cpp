// SPDX-License-Identifier: MIT
// Which pixel layouts a driver may declare and how white is stored in the ones we draw.
#include <gtest/gtest.h>

#include <linux/fb.h>

#include "vantor/PixelFormat.h"

using Vantor::CPixelFormat;

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
