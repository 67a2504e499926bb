#ifndef VANTOR_TESTS_SYSTEMSUPPORT_H
#define VANTOR_TESTS_SYSTEMSUPPORT_H

// What the scenarios inside the test machine share. The guest runs the program in
// several states: before any framebuffer exists (NoFramebuffer.*), with the framebuffer
// but before any key device (NoKeypad.*), with a keypad that goes away
// (RemovedKeypad.*), then everything else, and last on a palette framebuffer.

#include <string>
#include <vector>

#include "UinputDevice.h"

// The keypad, made on first use after two devices it must not be mistaken for, and after
// two that came and went, so that its event number differs from its input number. The
// devices live as long as the process: input numbers are never reused within a boot.
UinputDevice& TheKeypad();

// Runs argv (argv[0] a path) as a program of its own with its output in /results/LOG.
// For each group of keys it waits until a process of `program` that has not had keys
// yet opens the keypad, then presses them. Returns the exit status, or -1 when a step
// never opened the keypad or the program did not end within a minute (it is killed).
int RunWithKeys(const std::string& log, const std::vector<std::string>& argv,
                const std::string& program, const std::vector<std::vector<int>>& steps);

#endif
