#ifndef VANTOR_PLATFORM_TEST_H
#define VANTOR_PLATFORM_TEST_H

#include <gtest/gtest.h>
#include <sys/select.h>

#include "vantor_platform.h"

// Every test starts and ends with nothing virtual, as a program would find the system.
class Platform : public ::testing::Test {
  protected:
    void SetUp() override { vp_reset(); }
    void TearDown() override { vp_reset(); }
};

// select on one descriptor, as the library's key wait does.
inline int WaitReadable(int fd, double seconds) {
    fd_set set;
    FD_ZERO(&set);
    FD_SET(fd, &set);
    timeval timeout = {long(seconds), long((seconds - long(seconds)) * 1e6)};
    return select(fd + 1, &set, nullptr, nullptr, &timeout);
}

#endif
