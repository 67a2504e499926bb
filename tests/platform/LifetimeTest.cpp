// The private directory lives as long as the process that made it, not as long as
// whichever process happens to exit first.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "PlatformTest.h"

namespace {

const char* const kFont = "/usr/share/fonts/vantor/lr.tf";

int EntriesIn(const std::string& dir) {
    const std::filesystem::directory_iterator entries(dir);
    return int(std::distance(entries, std::filesystem::directory_iterator()));
}

}  // namespace

// A death test's child, like any forked child, shares the parent's directory.
TEST(PlatformLifetime, AForkedChildThatExitsLeavesTheParentsFilesAlone) {
    ASSERT_EQ(0, vp_file_add(kFont, "font", 4));
    EXPECT_EXIT(std::exit(0), ::testing::ExitedWithCode(0), "");
    EXPECT_EQ(0, access(kFont, R_OK));
    vp_reset();
}

// The "threadsafe" style runs the statement in a freshly started copy of this program,
// which makes its own directory; the parent hands it where through the environment.
TEST(PlatformLifetime, TheProcessThatMadeTheDirectoryRemovesItAtExit) {
#ifdef VANTOR_TESTS_EMULATED
    GTEST_SKIP() << "the emulator cannot start a second copy of this program";
#endif
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    std::string dir;
    if (const char* inherited = std::getenv("VP_LIFETIME_TMPDIR")) {
        dir = inherited;
    } else {
        char made[] = "/tmp/vantor-platform-lifetime-XXXXXX";
        ASSERT_NE(nullptr, mkdtemp(made));
        dir = made;
        setenv("VP_LIFETIME_TMPDIR", made, 1);
    }
    EXPECT_EXIT(
        {
            setenv("TMPDIR", dir.c_str(), 1);  // where the child makes its directory
            vp_file_add(kFont, "font", 4);
            std::exit(EntriesIn(dir) == 1 ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
    EXPECT_EQ(0, EntriesIn(dir));
    rmdir(dir.c_str());
    unsetenv("VP_LIFETIME_TMPDIR");
    GTEST_FLAG_SET(death_test_style, "fast");
}
