// SPDX-License-Identifier: MIT
// One key press in a 10-entry menu: the menu moves its selection and repaints itself
// onto the screen. Keys come from memory, so the time is the repaint's, not a device's.
#include <cstdio>

#include "BenchScreen.h"
#include "Workload.h"
#include "vantor/Context.h"
#include "vantor/Framebuffer.h"
#include "vantor/Keypad.h"
#include "vantor/Menu.h"

namespace VantorBench {

namespace {

const int kStepsPerWalk = 256;
const int kKeyNext = 114;
const int kKeyChoose = 10;

// Answers "next" kStepsPerWalk times, then "choose", and starts over.
class WalkingKeypad : public Vantor::CKeypad {
  public:
    int WaitKeyEvent(float) override {
        if (pressed == kStepsPerWalk) {
            pressed = 0;
            return kKeyChoose;
        }
        ++pressed;
        return kKeyNext;
    }

  private:
    int pressed = 0;
};

class MenuSetup {
  public:
    MenuSetup() : menu(*Vantor::pContext->pFramebuffer->pFontRegular, keypad) {
        menu.setOffset(300, 100);
        for (int id = 1; id <= 10; ++id) {
            char text[32];
            std::snprintf(text, sizeof text, "Entry %d: settings", id);
            menu.AddItem(id, text, id == 1);
        }
        menu.Draw();
        menu.Autoresize(3);
    }
    WalkingKeypad keypad;
    Vantor::CMenu menu;
};

class MenuWalk : public Workload {
  public:
    void Run() override {
        Vantor::CFramebuffer& fb = *Vantor::pContext->pFramebuffer;
        setup.menu.QueryMenu(fb.pScreen, fb.getScreenWidth(), fb.getScreenHeight(), 0.2f);
    }
    double units() const override { return kStepsPerWalk; }

  private:
    MenuSetup setup;
};

// The floor of the menu's own canvas: fill it, save and paint its rows.
class MenuFloor : public Workload {
  public:
    MenuFloor() {
        MenuSetup setup;
        floor = MakeFloor(setup.menu.getWidth(), setup.menu.getHeight());
    }
    void Run() override { floor->Run(); }

  private:
    std::unique_ptr<Workload> floor;
};

std::unique_ptr<Workload> MakeIfStarted(bool floorOnly) {
    if (!StartLibrary()) return nullptr;
    if (floorOnly) return std::unique_ptr<Workload>(new MenuFloor());
    return std::unique_ptr<Workload>(new MenuWalk());
}

const Register kStep("menu/step", [] { return MakeIfStarted(false); });
const Register kFloor("floor/menu", [] { return MakeIfStarted(true); });

}  // namespace

}  // namespace VantorBench
