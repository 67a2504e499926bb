// A shell script's flow as a device runs it: examples/installer.sh, one vantor process
// per step, the real framebuffer, and keys through the real input device once each
// step that waits for keys has opened it.
#include <dirent.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "SystemSupport.h"

namespace {

// A vantor process, not seen before, that has the keypad open; 0 after ten seconds.
pid_t NextKeyedStep(const std::string& node, std::set<pid_t>& seen) {
    for (int tries = 0; tries < 200; ++tries) {
        DIR* proc = opendir("/proc");
        while (dirent* entry = proc ? readdir(proc) : nullptr) {
            const pid_t pid = pid_t(std::atoi(entry->d_name));
            if (pid > 0 && !seen.count(pid) && HasOpen(pid, VANTOR_CLI, node)) {
                closedir(proc);
                seen.insert(pid);
                return pid;
            }
        }
        if (proc) closedir(proc);
        usleep(50000);
    }
    return 0;
}

std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

}  // namespace

TEST(RealDevices, InstallerScriptRunsWithKeysFromTheDevice) {
    const std::string node = TheKeypad().EventNode();
    ASSERT_FALSE(node.empty());
    std::ofstream("/tmp/firmware.img", std::ios::binary) << std::string(3 << 20, '\x5a');
    const std::string bin = std::string(VANTOR_CLI).substr(0, std::string(VANTOR_CLI).rfind('/'));
    setenv("PATH", (bin + ":/bin:/usr/bin").c_str(), 1);
    const pid_t script = StartProgram(
        "installer.log", {"/bin/sh", VANTOR_INSTALLER, "/tmp/firmware.img", "/tmp/slot-"});

    // The menu: down to slot b, choose; the question: up to Yes, choose; the last word.
    const std::vector<std::vector<int>> steps = {{7, 50}, {6, 50}, {50}};
    std::set<pid_t> seen;
    for (const std::vector<int>& keys : steps) {
        if (NextKeyedStep(node, seen) == 0) {
            kill(script, SIGKILL);
            waitpid(script, nullptr, 0);
            FAIL() << "no vantor step opened " << node << "; see installer.log";
        }
        for (int code : keys) TheKeypad().Press(code);
    }
    int status = -1;
    ASSERT_TRUE(Finished(script, status, "installer-stuck.raw")) << "the script did not end";
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_EQ(Slurp("/tmp/firmware.img"), Slurp("/tmp/slot-b"));
}
