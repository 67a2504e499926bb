// The demo as a device runs it: its own process, the real framebuffer, and every key
// pressed through the real input device once the demo has opened it.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "SystemSupport.h"

TEST(RealDevices, DemoRunsToItsEndWithKeysFromTheDevice) {
    const std::string node = TheKeypad().EventNode();
    ASSERT_FALSE(node.empty());
    const pid_t demo = StartProgram("demo.log", {VANTOR_DEMO, "/dev/fb0", "800x480"});
    // Events reach only the readers that have the node open: wait for the demo's.
    for (int tries = 0; tries < 600 && !HasOpen(demo, VANTOR_DEMO, node); ++tries) usleep(50000);
    if (!HasOpen(demo, VANTOR_DEMO, node)) {
        kill(demo, SIGKILL);
        waitpid(demo, nullptr, 0);
        FAIL() << "the demo never opened " << node << "; see demo.log";
    }
    // Install (confirm with Yes), acknowledge, device information, reboot (Yes). Spaced
    // like a person's presses: at six records per key, twelve at once overflow the few
    // dozen records evdev keeps for a reader, and the kernel drops the oldest.
    for (int code : {50, 6, 50, 50, 7, 50, 50, 7, 7, 50, 6, 50}) {
        PressAll({code});
        usleep(100000);
    }
    int status = -1;
    ASSERT_TRUE(Finished(demo, status, "demo-stuck.raw"))
        << "the demo did not finish within a minute";
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}
