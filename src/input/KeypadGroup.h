// SPDX-License-Identifier: MIT
#ifndef VANTOR_KEYPADGROUP_H
#define VANTOR_KEYPADGROUP_H

#include <poll.h>

#include <memory>
#include <string>
#include <vector>

#include "vantor/Keypad.h"

namespace Vantor {

class CKeyTable;

// Every key device of a list, read as one keypad: a wait watches them all with one
// poll and answers one record, whose code the key table translates. Its own device
// path is the first device found; its descriptor stands for the group: one that is
// open (so > 0 while any device is), kDeviceLost once the last one went away, -1 when
// none was ever opened.
class CKeypadGroup : public CKeypad {
  public:
    static const size_t kMaxDevices = 16;

    // Entries are event node paths (starting with /dev/input/) or name prefixes, each
    // matching every input device whose name begins with it. No entries: the device
    // named "tca8418..." among input0 to input8, the first one only.
    CKeypadGroup(const std::vector<std::string>& entries, const CKeyTable& keyTable);
    ~CKeypadGroup() override;

    // Opens every device found that is not open yet: 0 when at least one is open.
    int OpenDevice() override;
    int WaitKeyEvent(float timeout) override;

  private:
    void Find(const std::vector<std::string>& entries);
    void Add(const std::string& path);
    size_t NextReady();
    void UpdateDescriptor();

    const CKeyTable& keys;
    std::vector<std::unique_ptr<CKeypad>> devices;
    std::vector<pollfd> watched;  // one per device, kept so that a wait allocates nothing
    size_t next = 0;              // where the next look for a ready device starts
    bool opened = false;          // some device was open once
};

}  // namespace Vantor

#endif
