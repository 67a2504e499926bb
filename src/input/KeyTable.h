// SPDX-License-Identifier: MIT
#ifndef VANTOR_KEYTABLE_H
#define VANTOR_KEYTABLE_H

namespace Vantor {

// Which library key code each Linux key code gives. Trivially destructible on purpose:
// keypads refer to the process's table until the unload hook has destroyed them.
class CKeyTable {
  public:
    static const int kCodes = 768;  // Linux key codes 0 to KEY_MAX
    static const int kSetTCA8418 = 0;
    static const int kSetCommon = 1;

    CKeyTable();

    // False (and nothing changed) for an unknown set.
    bool Reset(int set);
    // False (and nothing changed) for a code out of range or a key that is neither 0
    // (no key) nor a library key code.
    bool Set(int code, int key);
    // The library key code of a device code, or -1 when it gives none.
    int Translate(int code) const;

  private:
    void Fill(const int (*pairs)[2], int count);

    unsigned char keys[kCodes];  // 0: no key; every library key code is below 256
};

}  // namespace Vantor

#endif
