// SPDX-License-Identifier: MIT
#ifndef VANTOR_PLATFORM_VIRTUALCONSOLE_H
#define VANTOR_PLATFORM_VIRTUALCONSOLE_H

namespace VantorPlatform {

// The virtual terminal console, /dev/tty0: a one-byte file holding its KD mode as a
// digit, so every process sharing the directory sees one console. Its descriptors
// answer KDGETMODE and KDSETMODE from and into that byte.
class VirtualConsole {
  public:
    static const char kPath[];

    // False for any request but the two mode calls, which the real ioctl then refuses.
    static bool Answer(int fd, unsigned long request, void* argument, int& error);
};

}  // namespace VantorPlatform

#endif
