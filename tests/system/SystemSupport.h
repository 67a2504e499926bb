#ifndef VANTOR_TESTS_SYSTEMSUPPORT_H
#define VANTOR_TESTS_SYSTEMSUPPORT_H

// What the scenarios inside the test machine share. The guest runs the program in
// several states: before any framebuffer exists (NoFramebuffer.*), with the framebuffer
// but before any key device (NoKeypad.*), with a keypad that goes away
// (RemovedKeypad.*), then everything else, and last on a 16-bit framebuffer.

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "UinputDevice.h"

// The framebuffer the RealFramebuffer tests draw on: $VANTOR_SYSTEM_FB, else /dev/fb0.
const char* TheFramebuffer();

// Wall time a call takes, in seconds.
double SecondsOf(const std::function<void()>& call);

// The keypad, made on first use after two devices it must not be mistaken for, and after
// two that came and went, so that its event number differs from its input number. The
// devices live as long as the process: input numbers are never reused within a boot,
// and the library only looks at input0 to input8.
UinputDevice& TheKeypad();

// Presses and releases each key in turn on TheKeypad().
void PressAll(std::initializer_list<int> codes);

// True when process pid runs the program at path (the guest may see it under /host)
// and has node open: only then do key events reach it.
bool HasOpen(pid_t pid, const std::string& program, const std::string& node);

// Forks and runs argv (argv[0] a path) with its output in /results/LOG and only its own
// descriptors: an inherited keypad node would look as if it had opened the keypad.
pid_t StartProgram(const std::string& log, const std::vector<std::string>& argv);

// Waits up to a minute for pid; a program still running then is killed, its screen
// (fb0) kept in /results/STUCK for a person to look at, and false returned.
bool Finished(pid_t pid, int& status, const std::string& stuck);

// Words read from the device with read(), as any other program would see the screen.
std::vector<uint32_t> ReadScreen(const char* device, size_t words);

#endif
