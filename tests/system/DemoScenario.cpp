// The demo as a device runs it: its own process, the real framebuffer, and every key
// pressed through the real input device once the demo has opened it.
#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <fstream>
#include <string>

#include "SystemSupport.h"

namespace {

// True once the child runs the demo itself: between fork and exec it still holds this
// process's descriptors.
bool RunsDemo(pid_t pid) {
    char target[PATH_MAX] = {};
    if (readlink(("/proc/" + std::to_string(pid) + "/exe").c_str(), target, PATH_MAX - 1) < 0)
        return false;
    const std::string exe = target, demo = VANTOR_DEMO;  // the guest may see it under /host
    return exe.size() >= demo.size() &&
           exe.compare(exe.size() - demo.size(), demo.size(), demo) == 0;
}

bool HasOpen(pid_t pid, const std::string& node) {
    if (!RunsDemo(pid)) return false;
    const std::string dir = "/proc/" + std::to_string(pid) + "/fd";
    DIR* entries = opendir(dir.c_str());
    bool found = false;
    while (dirent* entry = entries ? readdir(entries) : nullptr) {
        char target[PATH_MAX] = {};
        if (readlink((dir + "/" + entry->d_name).c_str(), target, PATH_MAX - 1) > 0)
            found |= node == target;
    }
    if (entries) closedir(entries);
    return found;
}

pid_t StartDemo() {
    const pid_t demo = fork();
    if (demo != 0) return demo;
    // Only the demo's own descriptors: an inherited keypad node would make it look as
    // if the demo had opened the keypad already.
    for (int fd = 3; fd < 1024; ++fd) close(fd);
    const int log = open("/results/demo.log", O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (log >= 0) {
        dup2(log, 1);
        dup2(log, 2);
    }
    execl(VANTOR_DEMO, VANTOR_DEMO, "/dev/fb0", "800x480", static_cast<char*>(nullptr));
    _exit(127);
}

// Waits up to a minute; a demo still running then is killed and its screen kept for a
// person to look at (raw 800x480 XRGB words).
bool Finished(pid_t demo, int& status) {
    for (int tries = 0; tries < 1200; ++tries) {
        if (waitpid(demo, &status, WNOHANG) == demo) return true;
        usleep(50000);
    }
    kill(demo, SIGKILL);
    waitpid(demo, &status, 0);
    std::ifstream screen("/dev/fb0", std::ios::binary);
    std::ofstream("/results/demo-stuck.raw", std::ios::binary) << screen.rdbuf();
    return false;
}

}  // namespace

TEST(RealDevices, DemoRunsToItsEndWithKeysFromTheDevice) {
    const std::string node = TheKeypad().EventNode();
    ASSERT_FALSE(node.empty());
    const pid_t demo = StartDemo();
    // Events reach only the readers that have the node open: wait for the demo's.
    for (int tries = 0; tries < 600 && !HasOpen(demo, node); ++tries) usleep(50000);
    if (!HasOpen(demo, node)) {
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
    ASSERT_TRUE(Finished(demo, status)) << "the demo did not finish within a minute";
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}
