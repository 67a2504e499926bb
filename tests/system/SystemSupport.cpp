// SPDX-License-Identifier: MIT
#include "SystemSupport.h"

#include "UinputDevice.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <set>

namespace {

// Devices that came and went before: input numbers are never reused within a boot but
// event numbers are, so the keypad's event node no longer has its input number.
struct Departed {
    Departed() {
        for (int n = 0; n < 2; ++n) UinputDevice("departed");
    }
};

// Made in this order, after the departed ones. The second name contains the
// controller's but does not begin with it.
struct Devices {
    Departed departed;
    UinputDevice gpio{"gpio-keys"};
    UinputDevice misnamed{"keypad-tca8418"};
    UinputDevice keypad{"tca8418-keypad"};
};

UinputDevice& TheKeypad() {
    static Devices devices;
    return devices.keypad;
}

std::string Link(const std::string& path) {
    char target[PATH_MAX] = {};
    return readlink(path.c_str(), target, PATH_MAX - 1) > 0 ? target : "";
}

// True when process pid has node open: only then do key events reach it.
bool HasOpen(pid_t pid, const std::string& node) {
    const std::string fds = "/proc/" + std::to_string(pid) + "/fd";
    DIR* entries = opendir(fds.c_str());
    bool found = false;
    while (dirent* entry = entries ? readdir(entries) : nullptr)
        found |= Link(fds + "/" + entry->d_name) == node;
    if (entries) closedir(entries);
    return found;
}

// A process not seen before that has node open; 0 after ten seconds.
pid_t NextKeyedProcess(const std::string& node, std::set<pid_t>& seen) {
    for (int tries = 0; tries < 200; ++tries) {
        DIR* proc = opendir("/proc");
        pid_t found = 0;
        while (dirent* entry = proc && found == 0 ? readdir(proc) : nullptr) {
            const pid_t pid = pid_t(std::atoi(entry->d_name));
            if (pid > 0 && !seen.count(pid) && HasOpen(pid, node)) found = pid;
        }
        if (proc) closedir(proc);
        if (found != 0) return *seen.insert(found).first;
        usleep(50000);
    }
    return 0;
}

// Forks and runs argv with only its own descriptors: an inherited keypad node would look
// as if it had opened the keypad.
pid_t Start(const std::string& log, const std::vector<std::string>& argv) {
    const pid_t child = fork();
    if (child != 0) return child;
    for (int fd = 3; fd < 1024; ++fd) close(fd);
    const int out = open(("/results/" + log).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    dup2(out, 1);
    dup2(out, 2);
    std::vector<char*> args;
    for (const std::string& arg : argv) args.push_back(const_cast<char*>(arg.c_str()));
    args.push_back(nullptr);
    execv(args[0], args.data());
    _exit(127);
}

}  // namespace

int RunWithKeys(const std::string& log, const std::vector<std::string>& argv,
                const std::vector<std::vector<int>>& steps,
                const std::function<void()>& meanwhile) {
    const std::string node = TheKeypad().EventNode();
    const pid_t pid = Start(log, argv);
    std::set<pid_t> seen;
    bool keyed = !node.empty();
    for (size_t step = 0; keyed && step < steps.size(); ++step) {
        keyed = NextKeyedProcess(node, seen) != 0;
        if (keyed && meanwhile) meanwhile();
        // Spaced like a person's presses: at six records a key, a burst overflows the
        // few dozen records evdev keeps for a reader, and the kernel drops the oldest.
        for (int code : steps[step]) {
            if (keyed) TheKeypad().Press(code);
            usleep(100000);
        }
    }
    int status = -1;
    for (int tries = 0; keyed && tries < 1200; ++tries) {
        if (waitpid(pid, &status, WNOHANG) == pid)
            return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        usleep(50000);
    }
    kill(pid, SIGKILL);
    waitpid(pid, &status, 0);
    return -1;
}
