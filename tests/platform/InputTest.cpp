// Input devices, key waits and key scripts, through the calls the library's keypad
// makes: a stream read of the name files, then poll (or select, for other programs)
// and read on the event node.
#include <fcntl.h>
#include <linux/input.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "PlatformTest.h"

namespace {

std::string NameOf(int index) {
    std::ifstream in("/sys/class/input/input" + std::to_string(index) + "/name");
    std::string name;
    return std::getline(in, name) ? name : "(none)";
}

int PollReadable(int fd, double seconds) {
    pollfd watched = {fd, POLLIN, 0};
    return poll(&watched, 1, int(seconds * 1000));
}

double SecondsOf(int (*wait)(int, double), int fd, double timeout, int& result) {
    const auto start = std::chrono::steady_clock::now();
    result = wait(fd, timeout);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// A program that polls for keys: a wait with the given time-out, then one record per
// read, until it has seen the given number of records.
std::vector<input_event> Poll(int fd, double timeout, size_t records,
                              int (*wait)(int, double) = PollReadable) {
    std::vector<input_event> seen;
    for (int round = 0; round < 100 && seen.size() < records; ++round) {
        input_event event;
        if (wait(fd, timeout) == 1 && read(fd, &event, sizeof(event)) == ssize_t(sizeof(event))) {
            seen.push_back(event);
        }
    }
    return seen;
}

// "s50" a scan code, "50+" / "50-" a key press / release, "|" a sync.
std::string Describe(const std::vector<input_event>& events) {
    std::string text;
    for (const input_event& e : events) {
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

const char kKeyRecords[] = "s50 50+ | s50 50- | ";

}  // namespace

TEST_F(Platform, InputDevicesShowNameFilesAndNodes) {
    ASSERT_EQ(0, vp_input_add(3, "tca8418"));
    ASSERT_EQ(0, vp_input_add_name(4, "gpio-keys"));
    ASSERT_EQ(0, vp_input_add(5, nullptr));
    ASSERT_EQ(0, vp_input_add_numbered(6, 2, "moved"));
    EXPECT_EQ("tca8418", NameOf(3));
    EXPECT_EQ("gpio-keys", NameOf(4));
    EXPECT_EQ("(none)", NameOf(5));
    EXPECT_EQ(-1, open("/dev/input/event4", O_RDONLY));
    EXPECT_EQ(-1, open("/dev/input/event6", O_RDONLY));
    for (const char* node : {"/dev/input/event5", "/dev/input/event2"}) {
        const int fd = open(node, O_RDONLY);
        EXPECT_GE(fd, 0) << node;
        close(fd);
    }
    EXPECT_EQ(-1, vp_input_add_numbered(7, 3, "taken"));  // event3 is input3's node

    ASSERT_EQ(0, vp_input_remove(3));
    EXPECT_EQ("(none)", NameOf(3));
    EXPECT_EQ(-1, open("/dev/input/event3", O_RDONLY));
    EXPECT_EQ(-1, vp_input_remove(3));
    EXPECT_EQ(-1, vp_input_add(-1, "tca8418"));
}

TEST_F(Platform, EventNodeWaitsOutItsTimeOutAndSendsTheDriversRecordSequence) {
    vp_input_add(0, "tca8418");
    const int fd = open("/dev/input/event0", O_RDONLY);
    ASSERT_GE(fd, 0);
    const int again = open("/dev/input/event0", O_RDONLY);
    EXPECT_EQ(2, vp_input_open_count(0));
    close(again);
    EXPECT_EQ(1, vp_input_open_count(0));

    for (auto wait : {WaitReadable, PollReadable}) {
        int ready = -1;
        const double waited = SecondsOf(wait, fd, 0.1, ready);
        EXPECT_EQ(0, ready);
        EXPECT_GE(waited, 0.095);
        EXPECT_LT(waited, 0.5);
    }

    ASSERT_EQ(0, vp_input_press(0, 50));
    const std::vector<input_event> events = Poll(fd, 0.1, 6);
    EXPECT_EQ(kKeyRecords, Describe(events));
    EXPECT_GT(events[0].input_event_sec, 0u);
    EXPECT_EQ(0, PollReadable(fd, 0.0));
    close(fd);
    EXPECT_EQ(0, vp_input_open_count(0));
    EXPECT_EQ(-1, vp_input_event(7, EV_KEY, 1, 1));
}

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
            const std::string keys = Describe(Poll(fd, timeout, 18, wait));
            EXPECT_EQ("s6 6+ | s6 6- | s7 7+ | s7 7- | s50 50+ | s50 50- | ", keys);
            EXPECT_EQ(std::vector<int>({1, 1, 1}), looks);
            EXPECT_EQ(0, vp_input_script_left(1));
        }
    }
    EXPECT_EQ(-1, vp_input_script(1, "6, x"));
    EXPECT_EQ(-1, vp_input_script(1, "70000"));
    EXPECT_EQ(-1, vp_input_script(2, "6"));
    close(fd);
}

TEST_F(Platform, AKeyTheHookQueuesComesBeforeTheScriptsNext) {
    vp_input_add(0, "tca8418");
    vp_input_script(0, "50");
    static int calls = 0;
    calls = 0;
    vp_set_wait_hook(
        [](int index, void*) {
            if (calls++ == 0) vp_input_event(index, EV_KEY, 30, 1);
        },
        nullptr);
    const int fd = open("/dev/input/event0", O_RDONLY);
    EXPECT_EQ("30+ ", Describe(Poll(fd, 0.1, 1)));
    EXPECT_EQ(1, vp_input_script_left(0));  // not queued behind the hook's key
    EXPECT_EQ(kKeyRecords, Describe(Poll(fd, 0.1, 6)));
    close(fd);
}

// Unplugged while a reader waits, the node wakes it as evdev does, and stays that way
// even once a new device takes the same numbers.
TEST_F(Platform, RemovedDeviceHangsUpItsWaitingReaderAndFailsItsReads) {
    vp_input_add(0, "tca8418");
    const int fd = open("/dev/input/event0", O_RDONLY);
    std::thread unplug([] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        vp_input_remove(0);
    });
    pollfd watched = {fd, POLLIN, 0};
    EXPECT_EQ(1, poll(&watched, 1, 10000));
    unplug.join();
    EXPECT_EQ(POLLHUP | POLLERR, watched.revents & (POLLHUP | POLLERR));
    input_event event;
    EXPECT_EQ(-1, read(fd, &event, sizeof(event)));
    EXPECT_EQ(ENODEV, errno);

    vp_input_add(0, "tca8418");  // a new device with the same numbers
    EXPECT_EQ(-1, read(fd, &event, sizeof(event)));
    close(fd);
    EXPECT_EQ(0, vp_input_open_count(0));
}

TEST_F(Platform, UsedUpScriptTimesOutOrOnlyPollsUnlessAWaitCouldHang) {
    vp_input_add(0, "tca8418");
    vp_input_script(0, "");
    const int fd = open("/dev/input/event0", O_RDONLY);
    int ready = -1;
    EXPECT_GE(SecondsOf(PollReadable, fd, 0.1, ready), 0.095);
    EXPECT_EQ(0, ready);
    vp_set_exit_when_exhausted(1);
    EXPECT_EQ(0, PollReadable(fd, 0.0));  // a poll cannot hang: it is not stopped
    vp_input_script(0, nullptr);          // nor is a device that never had a script
    EXPECT_EQ(0, PollReadable(fd, 0.05));
    close(fd);
}

TEST(PlatformDeathTest, UsedUpScriptEndsAWaitingProgramInsteadOfHanging) {
    EXPECT_EXIT(
        {
            vp_input_add(0, "tca8418");
            vp_input_script(0, "5");
            vp_set_exit_when_exhausted(1);
            const int fd = open("/dev/input/event0", O_RDONLY);
            Poll(fd, 10.0, 6);  // every record of the key's press and release
            PollReadable(fd, 10.0);
        },
        ::testing::ExitedWithCode(VP_EXIT_SCRIPT_EXHAUSTED),
        "^vantor-platform: key script exhausted while the program waits for a key\n$");
}
