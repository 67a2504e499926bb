// SPDX-License-Identifier: MIT
#ifndef VANTOR_TESTS_SYSTEMSUPPORT_H
#define VANTOR_TESTS_SYSTEMSUPPORT_H

// Programs driven through a real input device inside the test machine.

#include <functional>
#include <string>
#include <vector>

// Runs argv (argv[0] a path) as a program of its own with its output in /results/LOG.
// For each group of keys it waits until a process that has not had keys yet opens the
// keypad, runs `meanwhile` (if given), then presses the keys. Returns the exit status,
// or -1 when a step never opened the keypad or the program did not end within a minute
// (it is killed). The keypad is made on first use after two devices it must not be
// mistaken for, and after two that came and went, so that its event number differs
// from its input number; it lives as long as the process, since input numbers are
// never reused within a boot.
int RunWithKeys(const std::string& log, const std::vector<std::string>& argv,
                const std::vector<std::vector<int>>& steps,
                const std::function<void()>& meanwhile = nullptr);

#endif
