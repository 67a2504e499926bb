// SPDX-License-Identifier: MIT
#ifndef VANTOR_PLATFORM_TEST_H
#define VANTOR_PLATFORM_TEST_H

#include <gtest/gtest.h>

#include "vantor_platform.h"

// Every test starts and ends with nothing virtual, as a program would find the system.
class Platform : public ::testing::Test {
  protected:
    void SetUp() override { vp_reset(); }
    void TearDown() override { vp_reset(); }
};

#endif
