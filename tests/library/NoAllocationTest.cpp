// SPDX-License-Identifier: MIT
// A repaint must not touch the heap: on a small device a key press or a progress step
// that allocates fragments memory over a long run. This executable counts every
// allocation the process makes (CountingAllocator.cpp).
#include "InterfaceFixture.h"
#include "vantor_platform.h"

long AllocationCount();

using NoAllocation = Interface;

TEST_F(NoAllocation, UpdateAndBarOnlyProgressAllocateNothingAfterTheFirstTime) {
    ASSERT_NE(nullptr, InitFramebuffer("/dev/fb0"));
    ASSERT_EQ(0, InitCanvas(-4, 10, kWidth, kHeight - 20));
    WriteText(3, 3, "left", 0xFFFFFF, 0);
    WriteAlignedTextWithBackground(0, 40, "centred band", 0xFF, 0xFF00, 1, 18);
    ASSERT_EQ(0, InitProgress(20, 150, 280, 60));
    ASSERT_EQ(0, ShowProgress("Copying", 1, 5.0f));
    ASSERT_EQ(0, Update());
    ASSERT_EQ(0, UpdateProgress(nullptr, 1, 10.0f));

    const long before = AllocationCount();
    for (int step = 0; step < 3; ++step) {
        ASSERT_EQ(0, Update());
        ASSERT_EQ(0, UpdateProgress(nullptr, 1, 20.0f + 30.0f * step));
    }
    const long repaints = AllocationCount() - before;
    ::operator delete(::operator new(8));  // the count must see allocations at all
    EXPECT_EQ(repaints + 1, AllocationCount() - before);
    EXPECT_EQ(0, repaints);
}

TEST_F(NoAllocation, AMenuKeyPressRepaintsWithoutAllocating) {
    ASSERT_NE(nullptr, InitFramebuffer("/dev/fb0"));
    AddKeypad();
    ASSERT_EQ(0, InitKeypad());
    ASSERT_EQ(0, InitMenu(10, 10));
    const char* entries[] = {"one", "two", "three", "four", "five", nullptr};
    static long seen[5];
    static int waits;
    waits = 0;
    vp_set_wait_hook([](int, void*) { seen[waits++] = AllocationCount(); }, nullptr);
    Script({kDown, kDown, kUp, kDown, kOk});
    ASSERT_EQ(3, ShowMenu(entries, eMenuVertical, eAlignLeft));
    ASSERT_EQ(5, waits);
    // Between the first and the last wait the menu stepped and repainted three times.
    EXPECT_EQ(0, seen[4] - seen[1]);
}
