// SPDX-License-Identifier: MIT
// Programs as a device runs them: their own processes, the real framebuffer, and keys
// pressed through the real input device once the program has opened it.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "SystemSupport.h"

namespace {

// The display the demo is given: the framebuffer device, or the DRM card in a boot
// without fbdev emulation.
const char* Display() {
    return access("/dev/fb0", F_OK) == 0 ? "/dev/fb0" : "/dev/dri/card0";
}

std::string Slurp(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

}  // namespace

// Install (confirm with Yes), acknowledge, device information, reboot (Yes).
TEST(RealDevices, DemoRunsToItsEndWithKeysFromTheDevice) {
    EXPECT_EQ(0, RunWithKeys("demo.log", {VANTOR_DEMO, Display(), "800x480"},
                             {{50, 6, 50, 50, 7, 50, 50, 7, 7, 50, 6, 50}}))
        << "see demo.log";
}

// examples/installer.sh, one vantor process per step: the menu (down to slot b, choose),
// the question (up to Yes, choose), the last word.
TEST(RealDevices, InstallerScriptRunsWithKeysFromTheDevice) {
    std::ofstream("/tmp/firmware.img", std::ios::binary) << std::string(3 << 20, '\x5a');
    const std::string cli = VANTOR_CLI;
    setenv("PATH", (cli.substr(0, cli.rfind('/')) + ":/bin:/usr/bin").c_str(), 1);
    EXPECT_EQ(0, RunWithKeys("installer.log",
                             {"/bin/sh", VANTOR_INSTALLER, "/tmp/firmware.img", "/tmp/slot-"},
                             {{7, 50}, {6, 50}, {50}}))
        << "see installer.log";
    EXPECT_EQ(Slurp("/tmp/firmware.img"), Slurp("/tmp/slot-b"));
}
