// SPDX-License-Identifier: MIT
// The library as a host sees it through dlopen: the load hook has made the state record
// and installed the crash report before any call, and dlclose takes everything away.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <signal.h>

namespace {

using InitFramebufferCall = void* (*)(const char*);
using InitKeypadCall = int (*)();

bool CrashHandlerInstalled(void* library) {
    void* handler = dlsym(library, "_ZN6Vantor7handlerEiP9siginfo_tPv");
    struct sigaction action;
    sigaction(SIGSEGV, nullptr, &action);
    return handler != nullptr && reinterpret_cast<void*>(action.sa_sigaction) == handler;
}

}  // namespace

TEST(LoadHook, DlopenMakesTheRecordAndDlcloseReleasesIt) {
    void* library = dlopen(VANTOR_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(nullptr, library) << dlerror();
    auto** context = static_cast<void**>(dlsym(library, "_ZN6Vantor8pContextE"));
    ASSERT_NE(nullptr, context);
    EXPECT_NE(nullptr, *context);
    EXPECT_TRUE(CrashHandlerInstalled(library));

    // Fill two slots, so that a missing cleanup shows as a leak under the sanitizers.
    auto initFramebuffer = reinterpret_cast<InitFramebufferCall>(dlsym(library, "InitFramebuffer"));
    auto initKeypad = reinterpret_cast<InitKeypadCall>(dlsym(library, "InitKeypad"));
    EXPECT_EQ(nullptr, initFramebuffer(nullptr));
    EXPECT_EQ(-19, initKeypad());
    ASSERT_EQ(0, dlclose(library));

    struct sigaction action;
    sigaction(SIGSEGV, nullptr, &action);
    EXPECT_EQ(SIG_DFL, action.sa_handler);  // no handler left pointing into unmapped code
}
