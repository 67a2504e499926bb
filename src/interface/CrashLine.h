// SPDX-License-Identifier: MIT
// One line of the crash report, built on the stack and written straight to descriptor 2.
#ifndef VANTOR_CRASHLINE_H
#define VANTOR_CRASHLINE_H

#include <cstddef>

namespace Vantor {

// The crash report runs in signal context, possibly inside malloc or while another
// thread holds the standard streams' locks. This line therefore never allocates, never
// touches a stream's buffer or lock, and reaches the terminal with write(2) alone. It
// reads the error stream's format flags only, so numbers still appear in the base the
// host (or an earlier report) left on std::cerr.
class CrashLine {
  public:
    explicit CrashLine(const char* text);
    CrashLine& Number(long value);
    CrashLine& Pointer(const void* address);
    void Write();

  private:
    void Append(const char* text);
    void AppendDigits(unsigned long value, unsigned base, bool upper);

    char buffer[128];
    size_t length;
};

}  // namespace Vantor

#endif
