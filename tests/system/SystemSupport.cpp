#include "SystemSupport.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <climits>
#include <cstdlib>
#include <fstream>
#include <memory>

const char* TheFramebuffer() {
    const char* device = std::getenv("VANTOR_SYSTEM_FB");
    return device != nullptr && *device != 0 ? device : "/dev/fb0";
}

double SecondsOf(const std::function<void()>& call) {
    const auto start = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

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

}  // namespace

UinputDevice& TheKeypad() {
    static Devices devices;
    return devices.keypad;
}

void PressAll(std::initializer_list<int> codes) {
    for (int code : codes) TheKeypad().Press(code);
}

std::vector<uint32_t> ReadScreen(const char* device, size_t words) {
    std::vector<uint32_t> screen(words);
    const int fd = open(device, O_RDONLY);
    const ssize_t got = fd < 0 ? -1 : read(fd, screen.data(), words * 4);
    if (fd >= 0) close(fd);
    if (got != ssize_t(words * 4)) screen.clear();
    return screen;
}

namespace {

bool RunsProgram(pid_t pid, const std::string& program) {
    char target[PATH_MAX] = {};
    if (readlink(("/proc/" + std::to_string(pid) + "/exe").c_str(), target, PATH_MAX - 1) < 0)
        return false;
    const std::string exe = target;
    return exe.size() >= program.size() &&
           exe.compare(exe.size() - program.size(), program.size(), program) == 0;
}

}  // namespace

bool HasOpen(pid_t pid, const std::string& program, const std::string& node) {
    if (!RunsProgram(pid, program)) return false;
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

pid_t StartProgram(const std::string& log, const std::vector<std::string>& argv) {
    const pid_t child = fork();
    if (child != 0) return child;
    for (int fd = 3; fd < 1024; ++fd) close(fd);
    const int out = open(("/results/" + log).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (out >= 0) {
        dup2(out, 1);
        dup2(out, 2);
    }
    std::vector<char*> args;
    for (const std::string& arg : argv) args.push_back(const_cast<char*>(arg.c_str()));
    args.push_back(nullptr);
    execv(args[0], args.data());
    _exit(127);
}

bool Finished(pid_t pid, int& status, const std::string& stuck) {
    for (int tries = 0; tries < 1200; ++tries) {
        if (waitpid(pid, &status, WNOHANG) == pid) return true;
        usleep(50000);
    }
    kill(pid, SIGKILL);
    waitpid(pid, &status, 0);
    std::ifstream screen("/dev/fb0", std::ios::binary);
    std::ofstream("/results/" + stuck, std::ios::binary) << screen.rdbuf();
    return false;
}
