// A copy reports success only once the target is on storage: a device may lose power
// right after the call returns. fsync is watched (and made to fail) by interposition.
#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <fstream>

#include "InterfaceFixture.h"
#include "TestSupport.h"

namespace {

std::vector<std::string> flushed;
int flushError = 0;

}  // namespace

extern "C" int fsync(int fd) {
    using Call = int (*)(int);
    static Call real = reinterpret_cast<Call>(dlsym(RTLD_NEXT, "fsync"));
    char path[PATH_MAX] = {};
    const ssize_t length =
        readlink(("/proc/self/fd/" + std::to_string(fd)).c_str(), path, sizeof(path) - 1);
    flushed.push_back(length > 0 ? path : "");
    if (flushError != 0) {
        errno = flushError;
        return -1;
    }
    return real(fd);
}

TEST_F(Interface, CopySucceedsOnlyAfterTheTargetIsFlushed) {
    const std::string dir = VantorTest::MakeTempDir();
    std::ofstream(dir + "/src") << "firmware";
    for (int error : {0, EIO}) {
        flushed.clear();
        flushError = error;
        const std::string target = dir + "/dst" + std::to_string(error);
        const int result = CopyFileWithProgress((dir + "/src").c_str(), target.c_str(), nullptr, 0);
        EXPECT_EQ(error == 0 ? 0 : -5, result);
        EXPECT_NE(flushed.end(), std::find(flushed.begin(), flushed.end(), target));
    }
    flushError = 0;
}
