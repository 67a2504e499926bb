// SPDX-License-Identifier: MIT
#ifndef VANTOR_PLATFORM_INPUTDEVICE_H
#define VANTOR_PLATFORM_INPUTDEVICE_H

#include <deque>
#include <string>

namespace VantorPlatform {

// One virtual input device's event node and key script. The node is a FIFO that we
// keep open for reading and writing: the program's read-only open then never blocks,
// select and read are the kernel's own, and whole records are never split.
class InputDevice {
  public:
    InputDevice() = default;
    InputDevice(const InputDevice&) = delete;
    InputDevice& operator=(const InputDevice&) = delete;
    ~InputDevice();

    // Makes the FIFO at realPath; false (and nothing left behind) on failure. A shared
    // node is the FIFO another process may have made there; it stays behind.
    bool MakeNode(const std::string& realPath, bool shared);
    bool HasNode() const { return writer >= 0; }
    int Queue(int type, int code, int value);
    // One key change as the TCA8418 driver reports it: scan code, key, sync.
    int QueueKey(int code, int value);
    int QueuePress(int code);
    bool IsEmpty() const;

    // Replaces the script; false, keeping the old one, if a code is not a number
    // from 0 to 65535. A null script takes it away.
    bool SetScript(const char* codes);
    // The next scripted code, or false when there is none.
    bool NextScripted(int& code);
    bool ScriptUsedUp() const { return scripted && script.empty(); }
    int ScriptLeft() const { return int(script.size()); }

    int openCount = 0;
    int eventNumber = -1;  // M of its node /dev/input/eventM

  private:
    int writer = -1;
    std::string node;
    std::deque<int> script;
    bool scripted = false;
};

}  // namespace VantorPlatform

#endif
