// A repaint must not touch the heap: on a small device a key press or a progress step
// that allocates fragments memory over a long run. This executable counts every
// allocation the process makes (CountingAllocator.cpp).
#include "InterfaceFixture.h"
#include "vantor/Context.h"
#include "vantor/Framebuffer.h"
#include "vantor/Keypad.h"
#include "vantor/Menu.h"

long AllocationCount();

namespace {

// Records the allocation count at every key wait, then answers from a fixed script.
class CountingKeypad : public Vantor::CKeypad {
  public:
    int WaitKeyEvent(float) override {
        seen[waits] = AllocationCount();
        return script[waits++];
    }
    int script[5] = {114, 114, 108, 114, 10};
    long seen[5] = {};
    int waits = 0;
};

}  // namespace

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
    Vantor::CFramebuffer& fb = *Vantor::pContext->pFramebuffer;
    CountingKeypad keypad;
    Vantor::CMenu menu(*fb.pFontRegular, keypad);
    for (int id = 1; id <= 10; ++id) menu.AddItem(id, "entry", id == 1);
    menu.Draw();
    menu.Autoresize(3);

    ASSERT_EQ(3, menu.QueryMenu(fb.pScreen, fb.getScreenWidth(), fb.getScreenHeight(), 0.1f));
    // Between the first and the last wait the menu stepped and repainted three times.
    EXPECT_EQ(0, keypad.seen[4] - keypad.seen[1]);
}
