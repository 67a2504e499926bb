// CopyFileWithProgress: results, messages, the bar's cadence and what the target holds.
#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include "InterfaceFixture.h"
#include "TestSupport.h"

namespace {

std::vector<float> updates;

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
    return real(text, align, percent);
}

class Copy : public Interface {
  protected:
    void SetUp() override {
        Interface::SetUp();
        InitFramebuffer("/dev/fb0");
        updates.clear();
    }
    std::string dir = VantorTest::MakeTempDir();
};

TEST_F(Copy, FailuresNameTheirPathAndReturnTheirCode) {
    const std::string target = dir + "/target";
    EXPECT_EQ("Cannot acquire file stat " + dir + "/missing\n", CaptureStderrOf([&] {
                  EXPECT_EQ(-13, CopyFileWithProgress((dir + "/missing").c_str(), target.c_str(),
                                                      nullptr, 10));
              }));
    EXPECT_NE(0, access(target.c_str(), F_OK));

    Write(dir + "/source", "data");
    EXPECT_EQ("Cannot open output file " + dir + "/no/target\n", CaptureStderrOf([&] {
                  EXPECT_EQ(-1, CopyFileWithProgress((dir + "/source").c_str(),
                                                     (dir + "/no/target").c_str(), nullptr, 10));
              }));
    EXPECT_EQ("Read error: " + dir + "\n", CaptureStderrOf([&] {
                  EXPECT_EQ(-1, CopyFileWithProgress(dir.c_str(), target.c_str(), nullptr, 10));
              }));
    EXPECT_TRUE(updates.empty());
}

TEST_F(Copy, EmptySourceMakesTheTargetWithOneFinalUpdate) {
    InitProgress(10, 10, 200, 60);
    Write(dir + "/empty", "");
    const mode_t old = umask(022);
    EXPECT_EQ(0, CopyFileWithProgress((dir + "/empty").c_str(), (dir + "/made").c_str(), "x", 30));
    umask(old);
    struct stat status;
    ASSERT_EQ(0, stat((dir + "/made").c_str(), &status));
    EXPECT_EQ(0644u, status.st_mode & 0777);
    EXPECT_EQ(std::vector<float>{30.0f}, updates);
}

TEST_F(Copy, BarMovesFromWhereItStandsThroughItsShare) {
    InitProgress(10, 10, 200, 60);
    ShowProgress(nullptr, eAlignLeft, 20);
    Write(dir + "/three", Bytes(3 << 20, 'a'));
    EXPECT_EQ(0,
              CopyFileWithProgress((dir + "/three").c_str(), (dir + "/copy").c_str(), nullptr, 50));
    ASSERT_EQ(4u, updates.size());
    EXPECT_NEAR(36.67, updates[0], 0.01);
    EXPECT_NEAR(53.33, updates[1], 0.01);
    EXPECT_NEAR(70.0, updates[2], 0.01);
    EXPECT_NEAR(70.0, updates[3], 0.01);
}

TEST_F(Copy, TenMegabytesGiveTenUpdatesAndTheFinalOne) {
    InitProgress(10, 10, 200, 60);
    Write(dir + "/ten", Bytes(10 << 20, 'b'));
    EXPECT_EQ(0,
              CopyFileWithProgress((dir + "/ten").c_str(), (dir + "/copy").c_str(), nullptr, 100));
    EXPECT_EQ(11u, updates.size());
}

TEST_F(Copy, TargetHoldsExactlyTheSourceEvenOverALongerFile) {
    const std::string source = Bytes((1 << 20) + 12345, 'c');
    Write(dir + "/source", source);
    Write(dir + "/target", Bytes(5 << 20, 'z'));
    EXPECT_EQ(0, CopyFileWithProgress((dir + "/source").c_str(), (dir + "/target").c_str(), nullptr,
                                      100));
    EXPECT_TRUE(source == VantorTest::ReadFile(dir + "/target"));
    EXPECT_TRUE(updates.empty());  // no progress window: the copy runs without one
}
