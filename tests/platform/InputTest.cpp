// SPDX-License-Identifier: MIT
// Input devices, key waits and key scripts, through the calls the library's keypad
// makes (a stream read of the name files, then poll and read on the event node) and the
// select other programs use.
#include <fcntl.h>
#include <linux/input.h>
#include <poll.h>
#include <sys/select.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "PlatformTest.h"

namespace {

// select on one descriptor, as programs other than the library wait.
int WaitReadable(int fd, double seconds) {
    fd_set set;
    FD_ZERO(&set);
    FD_SET(fd, &set);
    timeval timeout = {long(seconds), long((seconds - long(seconds)) * 1e6)};
    return select(fd + 1, &set, nullptr, nullptr, &timeout);
}

// poll on one descriptor, as the library's key wait does.
int PollReadable(int fd, double seconds) {
    pollfd watched = {fd, POLLIN, 0};
    return poll(&watched, 1, int(seconds * 1000));
}

// "s50" a scan code, "50+" / "50-" a key press / release, "|" a sync: the records a
// program polling with this wait and time-out reads, one per read, up to `records`.
std::string Poll(int fd, double timeout, size_t records, int (*wait)(int, double) = PollReadable) {
    std::string text;
    input_event e;
    for (size_t seen = 0, round = 0; round < 100 && seen < records; ++round) {
        if (wait(fd, timeout) != 1 || read(fd, &e, sizeof(e)) != ssize_t(sizeof(e))) continue;
        ++seen;
        if (e.type == EV_MSC) {
            text += "s" + std::to_string(e.value) + " ";
        } else if (e.type == EV_KEY) {
            text += std::to_string(e.code) + (e.value ? "+ " : "- ");
        } else {
            text += e.type == EV_SYN ? "| " : "? ";
        }
    }
    return text;
}

}  // namespace

// A polling program gets a scripted key only once it has read all of the last one, and
// the hook sees each wait for a key once, not each poll that finds a record waiting;
// the same for select and poll, polling or waiting.
TEST_F(Platform, ScriptHandsOverOneKeyPerWaitAfterTheHookHasLooked) {
    vp_input_add(1, "tca8418");
    static std::vector<int> looks;
    vp_set_wait_hook([](int index, void*) { looks.push_back(index); }, nullptr);
    const int fd = open("/dev/input/event1", O_RDONLY);
    for (auto wait : {WaitReadable, PollReadable}) {
        for (double timeout : {0.0, 0.2}) {
            looks.clear();
            ASSERT_EQ(0, vp_input_script(1, "6, 7 50"));
            EXPECT_EQ("s6 6+ | s6 6- | s7 7+ | s7 7- | s50 50+ | s50 50- | ",
                      Poll(fd, timeout, 18, wait));
            EXPECT_EQ(std::vector<int>({1, 1, 1}), looks);
        }
    }
    for (const char* bad : {"6, x", "70000"}) EXPECT_EQ(-1, vp_input_script(1, bad));
    close(fd);
}
