// SPDX-License-Identifier: MIT
// CopyFileWithProgress: results, messages, the bar's cadence and what the target holds.
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/loop.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "InterfaceFixture.h"
#include "TestSupport.h"
#include "vantor_platform.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>

namespace {

std::vector<float> updates;
void (*onUpdate)() = nullptr;  // what happens mid-copy: a cancel, a kill

std::string Bytes(size_t size, char seed) {
    std::string data(size, '\0');
    for (size_t i = 0; i < size; ++i) data[i] = char(seed + i * 31 % 251);
    return data;
}

void Write(const std::string& path, const std::string& data) {
    VantorTest::WriteFile(path, std::vector<unsigned char>(data.begin(), data.end()));
}

}  // namespace

// Seen by the library in place of its own export, so the test can watch every update the
// copy makes; it passes each call on unchanged.
extern "C" int UpdateProgress(const char* text, int align, float percent) {
    using Call = int (*)(const char*, int, float);
    static Call real = reinterpret_cast<Call>(dlsym(RTLD_NEXT, "UpdateProgress"));
    updates.push_back(percent);
    if (onUpdate != nullptr) onUpdate();
    return real(text, align, percent);
}

class Copy : public Interface {
  protected:
    void SetUp() override {
        Interface::SetUp();
        InitFramebuffer("/dev/fb0");
        updates.clear();
        onUpdate = nullptr;
    }
    size_t Entries() const { return std::distance(std::filesystem::directory_iterator(dir), {}); }
    std::string dir = VantorTest::MakeTempDir();
};

// The target holds exactly the source, also over a longer file, and a new one gets the
// usual mode. The bar moves from where it stands through the copy's share, one update a
// block and a final one; without a progress window the copy runs without one.
TEST_F(Copy, TargetHoldsTheSourceAndTheBarMovesThroughItsShare) {
    const struct {
        size_t size;
        bool window;
        float share;
        std::vector<float> updates;
        void (*onUpdate)() = nullptr;  // what happens mid-copy: a cancel, a kill
    } cases[] = {
        {0, true, 30, {50}},
        {3 << 20, true, 50, {36.67f, 53.33f, 70, 70}},
        {(1 << 20) + 12345, false, 100, {}},
    };
    const mode_t old = umask(022);
    for (const auto& c : cases) {
        InitFramebuffer("/dev/fb0");
        if (c.window) InitProgress(10, 10, 200, 60);
        ShowProgress(nullptr, eAlignLeft, 20);
        updates.clear();
        const std::string source = Bytes(c.size, 'c'), target = dir + "/" + std::to_string(c.size);
        Write(dir + "/source", source);
        if (c.size > 0) Write(target, Bytes(5 << 20, 'z'));
        EXPECT_EQ(
            0, CopyFileWithProgress((dir + "/source").c_str(), target.c_str(), nullptr, c.share));
        EXPECT_TRUE(source == VantorTest::ReadFile(target)) << c.size;
        ASSERT_EQ(c.updates.size(), updates.size()) << c.size;
        for (size_t i = 0; i < updates.size(); ++i) EXPECT_NEAR(c.updates[i], updates[i], 0.01);
    }
    umask(old);
    struct stat status;
    ASSERT_EQ(0, stat((dir + "/0").c_str(), &status));
    EXPECT_EQ(0644u, status.st_mode & 0777);
}

namespace {

// A loop device over a file: a real partition-like source, where the machine allows it.
class LoopDevice {
  public:
    explicit LoopDevice(const std::string& backing) {
        const int control = open("/dev/loop-control", O_RDWR);
        const int number = control < 0 ? -1 : ioctl(control, LOOP_CTL_GET_FREE);
        if (control >= 0) close(control);
        if (number < 0) return;
        path = "/dev/loop" + std::to_string(number);
        fd = open(path.c_str(), O_RDWR);
        const int file = open(backing.c_str(), O_RDWR);
        if (fd < 0 || ioctl(fd, LOOP_SET_FD, file) != 0) path.clear();
        close(file);
    }
    ~LoopDevice() {
        if (!path.empty()) ioctl(fd, LOOP_CLR_FD, 0);
        if (fd >= 0) close(fd);
    }
    std::string path;
    int fd = -1;
};

}  // namespace

// Every fault on the way leaves the old target as it was, no temporary file beside it and
// no descriptor open; a signal or a short transfer is no fault at all.
TEST_F(Copy, FaultsLeaveTheOldTargetAndNothingBehind) {
    struct Fault {
        const char* call;
        int error;  // 0: shorten the call instead
        int nth;
        const char* what;  // the failure's line up to the path; null for success
        bool onSource;
    } faults[] = {
        {"write", ENOSPC, 1, "Write error: ", false},
        {"open", EROFS, 2, "Cannot open output file ", false},
        {"read", EIO, 2, "Read error: ", true},
        {"fsync", EIO, 1, "Write error: ", false},
        {"rename", EROFS, 1, "Write error: ", false},
        {"open", EACCES, 1, "Cannot open input file ", true},
        {"write", EINTR, 2, nullptr, false},
        {"read", EINTR, 1, nullptr, false},
        {"open", EINTR, 1, nullptr, false},
        {"fsync", EINTR, 1, nullptr, false},
        {"write", 0, 1, nullptr, false},
        {"read", 0, 2, nullptr, false},
    };
    const std::string source = dir + "/S", target = dir + "/T", old = Bytes(5000, 'o');
    const std::string data = Bytes((2 << 20) + 7, 's');
    Write(source, data);
    for (const Fault& f : faults) {
        Write(target, old);
        const int descriptors = VantorTest::OpenDescriptors();
        int result = 1;
        const std::string err = OutputOf([&] {
            f.error ? vp_fail_call(f.call, f.error, f.nth) : vp_short_call(f.call, f.nth);
            result = CopyFileWithProgressEx(source.c_str(), target.c_str(), nullptr, 10, 0);
        });
        vp_reset();
        const bool fails = f.what != nullptr;
        EXPECT_EQ(fails ? -f.error : 0, result) << f.call << " " << f.error;
        EXPECT_EQ(
            fails ? f.what + (f.onSource ? source : target) + ": " + std::strerror(f.error) + "\n"
                  : "",
            err);
        EXPECT_TRUE((fails ? old : data) == VantorTest::ReadFile(target)) << f.call;
        EXPECT_EQ(2, std::distance(std::filesystem::directory_iterator(dir), {})) << f.call;
        EXPECT_EQ(descriptors, VantorTest::OpenDescriptors()) << f.call << " " << f.error;
    }
}

// Failures name their path and return their code, the old call's as they always were,
// the new call's with the error's text. Sources whose length is unknown are refused
// before the target is touched; the old call copies nothing from them and must not
// empty the target either.
TEST_F(Copy, FailuresNameTheirPathAndReturnTheirCode) {
    const std::string source = dir + "/S", target = dir + "/T", fifo = dir + "/fifo";
    Write(source, "data");
    ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
    const struct {
        bool ex;  // CopyFileWithProgressEx, else the old call
        std::string from, to;
        int result;
        std::string line;  // on the error stream
    } cases[] = {
        {false, dir + "/missing", dir + "/new", -13,
         "Cannot acquire file stat " + dir + "/missing"},
        {false, source, dir + "/no/T", -1, "Cannot open output file " + dir + "/no/T"},
        {false, dir, target, -1, "Read error: " + dir},
        {false, "/proc/self/status", target, 0, ""},
        {true, dir, target, -EISDIR, "Cannot size input file " + dir + ": Is a directory"},
        {true, fifo, target, -EINVAL,
         "Cannot size input file " + fifo +
             ": Invalid argument (a pipe, not a regular file or a partition)"},
        {true, "/proc/self/status", target, -EINVAL,
         "Cannot size input file /proc/self/status: Invalid argument (a file that reports no "
         "length, not a regular file or a partition)"},
        {true, source, "", -ENOENT, "Cannot open output file \"\": No such file or directory"},
        {true, source, "/proc/version", geteuid() == 0 ? -ENOENT : -EACCES,
         geteuid() == 0
             ? "Cannot create temporary file /proc/.version.part: No such file or directory"
             : "Cannot open output file /proc/version: Permission denied"},
        {true, source, fifo, -ENXIO, "Cannot open output file " + fifo + ": " + strerror(ENXIO)},
    };
    for (const auto& c : cases) {
        Write(target, "keep");
        EXPECT_EQ(c.line.empty() ? "" : c.line + "\n", OutputOf([&] {
                      EXPECT_EQ(
                          c.result,
                          c.ex ? CopyFileWithProgressEx(c.from.c_str(), c.to.c_str(), nullptr, 5, 0)
                               : CopyFileWithProgress(c.from.c_str(), c.to.c_str(), nullptr, 5));
                  }));
        EXPECT_EQ("keep", VantorTest::ReadFile(target)) << c.from;
    }
    EXPECT_NE(0, access((dir + "/new").c_str(), F_OK));  // a missing source creates nothing
    // Success only once the target is on storage: a device may lose power right after;
    // and the old call has always failed a write that moved less than asked.
    for (const char* call : {"fsync", "write"}) {
        std::string(call) == "write" ? vp_short_call(call, 1) : vp_fail_call(call, EIO, 1);
        EXPECT_EQ("Write error: " + target + "\n", OutputOf([&] {
                      EXPECT_EQ(-5,
                                CopyFileWithProgress(source.c_str(), target.c_str(), nullptr, 10));
                  }))
            << call;
        vp_reset();
    }
}

// A partition (here a loop device) as source: the old call sees size 0 and leaves the
// target alone; the new one copies the device's whole size and reads it back.
TEST_F(Copy, BlockDeviceSourceAndTarget) {
    const std::string image = Bytes(3 << 20, 'd'), target = dir + "/T";
    Write(dir + "/image", image);
    LoopDevice loop(dir + "/image");
    if (loop.path.empty()) GTEST_SKIP() << "no loop device on this machine";
    Write(target, "keep");
    EXPECT_EQ(0, CopyFileWithProgress(loop.path.c_str(), target.c_str(), nullptr, 5));
    EXPECT_EQ("keep", VantorTest::ReadFile(target));

    InitProgress(10, 10, 200, 60);
    ShowProgress(nullptr, eAlignLeft, 20);
    EXPECT_EQ(
        0, CopyFileWithProgressEx(loop.path.c_str(), target.c_str(), "x", 40, VANTOR_COPY_VERIFY));
    EXPECT_TRUE(image == VantorTest::ReadFile(target));
    ASSERT_EQ(7u, updates.size());  // three blocks copied, three read back, the final one
    EXPECT_FLOAT_EQ(40.0f, updates[2]);
    EXPECT_FLOAT_EQ(60.0f, updates.back());

    // As a target the partition is written in place, and one too small is refused.
    Write(dir + "/small", "new head");
    EXPECT_EQ(0, CopyFileWithProgressEx((dir + "/small").c_str(), loop.path.c_str(), nullptr, 0,
                                        VANTOR_COPY_VERIFY));
    EXPECT_EQ("new head" + image.substr(8), VantorTest::ReadFile(loop.path));
    Write(dir + "/big", Bytes(4 << 20, 'b'));
    EXPECT_EQ(-ENOSPC,
              CopyFileWithProgressEx((dir + "/big").c_str(), loop.path.c_str(), nullptr, 0, 0));
}

// A copy stopped mid-way, politely (CancelCopy) or not (SIGKILL), leaves the old target;
// with an unnamed temporary file nothing else remains, with a named one (a file system
// without unnamed files) at most that one file, which the next copy removes unless a
// copy still running holds it.
TEST_F(Copy, StoppedCopiesLeaveAtMostOneFileThatTheNextCopyRemoves) {
    const struct {
        bool named;  // the unnamed temporary file is refused, as vfat does
        bool kill;   // SIGKILL at the first block, else CancelCopy
    } cases[] = {{false, false}, {true, false}, {false, true}, {true, true}};
    const std::string source = dir + "/S", target = dir + "/T", part = dir + "/.T.part";
    const std::string data = Bytes(3 << 20, 's'), old = Bytes(1000, 'o');
    Write(source, data);
    InitProgress(10, 10, 200, 60);
    for (const auto& c : cases) {
        Write(target, old);
        const pid_t child = c.kill ? fork() : 0;
        if (child == 0) {
            onUpdate = c.kill ? [] { raise(SIGKILL); } : [] { CancelCopy(); };
            if (c.named) vp_fail_call("open", EOPNOTSUPP, 2);
            const std::string err = OutputOf([&] {
                EXPECT_EQ(-ECANCELED,
                          CopyFileWithProgressEx(source.c_str(), target.c_str(), nullptr, 10, 0));
            });
            EXPECT_EQ("Copy stopped: " + target + ": " + std::strerror(ECANCELED) + "\n", err);
            if (c.kill) _exit(1);  // never reached: the kill came first
            onUpdate = nullptr;
            vp_reset();
        }
        int status = 0;
        if (c.kill) {
            ASSERT_EQ(child, waitpid(child, &status, 0));
        }
        EXPECT_TRUE(old == VantorTest::ReadFile(target)) << c.named << c.kill;
        EXPECT_EQ(c.named && c.kill ? 3u : 2u, Entries()) << c.named << c.kill;
        EXPECT_EQ(0, CopyFileWithProgressEx(source.c_str(), target.c_str(), nullptr, 10, 0));
        EXPECT_TRUE(data == VantorTest::ReadFile(target));
        EXPECT_EQ(2u, Entries()) << c.named << c.kill;
    }
    // A request made between copies stops the next one before it writes, and only that one.
    CancelCopy();
    Write(target, old);
    OutputOf([&] {
        EXPECT_EQ(-ECANCELED,
                  CopyFileWithProgressEx(source.c_str(), target.c_str(), nullptr, 10, 0));
    });
    EXPECT_TRUE(old == VantorTest::ReadFile(target));
    EXPECT_EQ(0, CopyFileWithProgressEx(source.c_str(), target.c_str(), nullptr, 10, 0));

    // A copy that is still running keeps its file, and the second copy is refused.
    Write(target, old);
    Write(part, "in progress");
    const int held = open(part.c_str(), O_RDONLY);
    ASSERT_EQ(0, flock(held, LOCK_EX));
    EXPECT_EQ("Cannot open output file " + target + ": " + std::strerror(EBUSY) + "\n",
              OutputOf([&] {
                  EXPECT_EQ(-EBUSY,
                            CopyFileWithProgressEx(source.c_str(), target.c_str(), nullptr, 10, 0));
              }));
    close(held);
    EXPECT_EQ("in progress", VantorTest::ReadFile(part));
    EXPECT_TRUE(old == VantorTest::ReadFile(target));
}
