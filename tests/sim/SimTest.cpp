// SPDX-License-Identifier: MIT
// The simulator: its key scripts, its PNG files and terminal view, a whole run of the
// demo, a session of several processes, its clean-up, and an installed copy.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "KeyScript.h"
#include "ShellRun.h"
#include "TestSupport.h"
#include "vantor/KeypadMatrix.h"

using namespace VantorSim;

namespace {

const char kDemoKeys[] = "ok, left, ok, none, none, ok, down, ok, ok, down, down, ok, left, ok";

ShellRun Simulate(const std::string& arguments) {
    return Shell(std::string(VANTOR_SIM) + " " + arguments);
}

}  // namespace

TEST(KeyScript, NamesCodesSkipsPausesAndComments) {
    const std::vector<KeyStep> steps =
        ParseKeyScript("down,Down  ok # the first choice\n149 none pause:0.25\n");
    using Vantor::KeypadMatrix::kDown, Vantor::KeypadMatrix::kOk;
    const std::vector<KeyStep> expected = {{KeyStep::Press, kDown, 0}, {KeyStep::Press, kDown, 0},
                                           {KeyStep::Press, kOk, 0},   {KeyStep::Press, 149, 0},
                                           {KeyStep::Skip, 0, 0},      {KeyStep::Pause, 0, 0.25}};
    EXPECT_EQ(expected, steps);
    for (const char* bad : {"okay", "0", "pause:-1", "pause:x", "70000"}) {
        EXPECT_THROW(ParseKeyScript(bad), std::invalid_argument) << bad;
    }
}

// The commands of a shell script share the screen, the key script and the numbering;
// each screen pixel is a square of --scale pixels in the pictures.
TEST(Simulator, IsOneSessionForAllTheProcessesOfAScript) {
    const std::string shots = VantorTest::MakeTempDir(), vantor = VANTOR_CLI;
    const ShellRun run =
        Simulate("--keys ok,select --scale 2 --shots " + shots + " -- sh -c '" + vantor +
                 " text --fg FF0000 --bg FF0000 X; " + vantor + " key; " + vantor + " key'");
    ASSERT_EQ(0, run.status) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("ok\nselect\n")) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("1 screenshot in"));
    const Picture shot = ReadPng(shots + "/0001.png");  // at the first key command's wait
    EXPECT_EQ(1600u, shot.width);
    EXPECT_EQ(0xFF0000u, shot.at(1, 1));  // what the text command left
    EXPECT_EQ(0u, shot.at(1599, 959));
}

// A reused directory holds this run's pictures only, and a screen nothing was drawn on
// is no picture; the user's own files stay.
TEST(Simulator, ShotsAreThisRunsAndShowWhatWasDrawn) {
    const std::string shots = VantorTest::MakeTempDir(), vantor = VANTOR_CLI;
    const struct {
        std::string program;
        const char* says;
        std::vector<std::string> files;  // in the directory afterwards
    } cases[] = {
        {vantor + " key", "0 screenshots in", {"keep.png", "notes.txt"}},
        {"sh -c '" + vantor + " text X; " + vantor + " key'",
         "1 screenshot in",
         {"0001.png", "keep.png", "notes.txt"}},
    };
    for (const auto& c : cases) {
        Shell("cd " + shots + " && touch 0001.png 0002.png 12345.png keep.png notes.txt");
        const ShellRun run = Simulate("--keys ok --shots " + shots + " -- " + c.program);
        EXPECT_EQ(0, run.status) << run.output;
        EXPECT_NE(std::string::npos, run.output.find(c.says)) << run.output;
        std::string listed;
        for (const std::string& file : c.files) listed += file + "\n";
        EXPECT_EQ(listed, Shell("ls " + shots).output) << c.program;
    }
    const ShellRun refused = Simulate("--keys ok --shots " + shots + "/notes.txt/x -- true");
    EXPECT_EQ(2, refused.status);
    EXPECT_NE(std::string::npos, refused.output.find("notes.txt/x: Not a directory"))
        << refused.output;
}

// On a terminal (a pseudo-terminal from script(1) here) typed keys reach the program
// however long it waits, the screen is drawn there, and q ends the whole run.
TEST(Simulator, TakesKeysTypedOnATerminalAndDrawsTheScreenThere) {
    if (Shell("script -qec true /dev/null").status != 0) GTEST_SKIP() << "no script(1)";
    const std::string sim = VANTOR_SIM, key = std::string(VANTOR_CLI) + " key";
    const auto typed = [&](const char* keys, const std::string& program) {
        ShellRun run = Shell(std::string("(printf '") + keys + "' | script -qec \"" + sim + " -- " +
                             program + "\" /dev/null)");
        run.output.erase(std::remove(run.output.begin(), run.output.end(), '\r'), run.output.end());
        return run;
    };
    ShellRun run = typed("\\r \\033[B", "sh -c '" + key + "; " + key + "; " + key + "'");
    EXPECT_EQ(0, run.status);
    const size_t ok = run.output.find("ok\n"), select = run.output.find("select\n", ok);
    EXPECT_NE(std::string::npos, run.output.find("down\n", select)) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("\033[38;2;0;0;0m\033[48;2;0;0;0m\u2580"));
    run = typed("q", "sh -c '" + key + "; echo on'");
    EXPECT_EQ(0, run.status);
    EXPECT_NE(std::string::npos, run.output.find("quit from the terminal"));
    EXPECT_EQ(std::string::npos, run.output.find("on\n")) << "the script went on";
}

// Every way a run ends has its status and message, and leaves no session directory.
TEST(Simulator, EachWayOutHasItsStatusAndLeavesNothingBehind) {
    const std::string sim = VANTOR_SIM, key = std::string(VANTOR_CLI) + " key";
    const std::string fontless = VantorTest::MakeTempDir();
    const std::string waits = sim + " --keys pause:30 -- sh -c '" + key + "' & sleep 1; kill ";
    const struct {
        std::string command;
        int status;
        const char* says;
    } cases[] = {
        {sim + " --keys ok -- " + key, 0, ""},
        {sim + " --keys ok -- sh -c '" + key + "; " + key + "; echo on'", 3, "used up"},
        {waits + "-INT $!; wait $!", 130, ""},
        {waits + "-TERM $!; wait $!", 143, ""},
        {sim + " --keys ok -- sh -c 'kill -SEGV $$'", 139, ""},
        {sim + " --keys ok -- /nonexistent/program", 127, "cannot run /nonexistent/program"},
        {sim + " --screen 800 -- /bin/true", 2, "bad --screen"},
        {sim + " -- /bin/true", 2, "no keys"},  // and no terminal
        {sim + " --keys ok --fonts " + fontless + "/none -- /bin/true", 2, "no such directory"},
        {sim + " --keys ok --fonts " + fontless + " -- /bin/true", 2, "lr.tf and lb.tf"},
    };
    for (const auto& c : cases) {
        const std::string tmp = VantorTest::MakeTempDir();
        // A sanitized build preloads its runtime into sh, which would catch the SIGSEGV.
        const ShellRun run =
            Shell("export TMPDIR=" + tmp + " ASAN_OPTIONS=handle_segv=0; " + c.command);
        EXPECT_EQ(c.status, run.status) << c.command << "\n" << run.output;
        EXPECT_NE(std::string::npos, run.output.find(c.says)) << run.output;
        EXPECT_EQ(std::string::npos, run.output.find("on\n")) << "the script went on";
        EXPECT_EQ(0, Shell("rmdir " + tmp).status) << c.command << " left files in " << tmp;
    }
}

// An installed copy moved elsewhere finds its own parts and fonts, none of the build's,
// and runs the demo to its end with a picture at every wait.
TEST(Simulator, RunsTheDemoFromAnInstalledTreeMovedAnywhere) {
    const std::string stage = VantorTest::MakeTempDir(), shots = VantorTest::MakeTempDir();
    ASSERT_EQ(0,
              Shell("DESTDIR=" + stage +
                    " " CMAKE_COMMAND " --install " BUILD_DIR " --prefix /usr >/dev/null && mv " +
                    stage + "/usr " + stage + "/moved")
                  .status);
    const std::string sim = stage + "/moved/bin/vantor-sim";
    const ShellRun env = Shell(sim + " --keys ok -- sh -c 'echo $LD_PRELOAD $VANTOR_SIM_FONTS'");
    EXPECT_EQ(0u, env.output.find(stage + "/moved/")) << env.output;
    EXPECT_NE(std::string::npos, env.output.find(stage + "/moved/share/fonts/vantor"));
    const ShellRun demo =
        Shell("LD_LIBRARY_PATH=$(dirname $(find " + stage + " -name libvantor.so)) " + sim +
              " --shots " + shots + " --keys '" + kDemoKeys + "' -- " VANTOR_DEMO);
    ASSERT_EQ(0, demo.status) << demo.output;
    EXPECT_NE(std::string::npos, demo.output.find("14 screenshots in " + shots)) << demo.output;
}

// On a DRM card (and no framebuffer device at all) the demo and the installer script
// run as they do on a framebuffer device, with the same pictures at the same moments;
// the installer's commands find the card by themselves.
TEST(Simulator, ShowsTheSamePicturesOnADrmCard) {
    const std::string work = VantorTest::MakeTempDir(), cli = VANTOR_CLI;
    ASSERT_EQ(0, Shell("head -c 100000 /dev/urandom > " + work + "/fw.img").status);
    const struct {
        std::string keys, program, drmProgram;
    } cases[] = {
        {kDemoKeys, VANTOR_DEMO, VANTOR_DEMO " /dev/dri/card0"},
        {"down,ok,up,ok,ok", "sh " VANTOR_INSTALLER " " + work + "/fw.img " + work + "/slot-", ""},
    };
    for (const auto& c : cases) {
        std::vector<std::string> shots;
        for (const char* drm : {"", "--drm"}) {
            shots.push_back(VantorTest::MakeTempDir());
            const std::string program = *drm && !c.drmProgram.empty() ? c.drmProgram : c.program;
            const ShellRun run =
                Shell("PATH=" + cli.substr(0, cli.rfind('/')) + ":$PATH " + VANTOR_SIM + " " + drm +
                      " --shots " + shots.back() + " --keys '" + c.keys + "' -- " + program);
            ASSERT_EQ(0, run.status) << program << drm << run.output;
        }
        const ShellRun diff = Shell("diff -r " + shots[0] + " " + shots[1] + " && ls " + shots[0]);
        EXPECT_EQ(0, diff.status) << c.program << diff.output;
        EXPECT_NE(std::string::npos, diff.output.find("0004.png")) << c.program;
    }
}
