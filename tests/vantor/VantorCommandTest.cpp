// SPDX-License-Identifier: MIT
// The vantor command as a script sees it: exit statuses, stdout and the screen, each
// subcommand run in the simulator with scripted keys.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "ShellRun.h"
#include "TestSupport.h"
#include "vantor/Progress.h"

namespace {

struct Outcome {
    int status;
    std::string out, err;
};

using VantorTest::MakeTempDir;
using VantorTest::ReadFile;

// Runs `vantor ARGS` through a shell; with keys, inside the simulator on an 800x480 screen.
Outcome RunVantor(const std::string& args, const std::string& keys = "",
                  const std::string& shots = "", const std::string& input = "") {
    const std::string dir = MakeTempDir();
    std::string command = std::string(VANTOR_CLI) + " " + args;
    if (!keys.empty()) {
        command = std::string(VANTOR_SIM) + (shots.empty() ? "" : " --shots " + shots) +
                  " --keys '" + keys + "' -- " + command;
    }
    const ShellRun run = Shell("printf '" + input + "' | " + command + " 2>" + dir + "/err", false);
    return Outcome{run.status, run.output, ReadFile(dir + "/err")};
}

// The bands of rows that hold white pixels, top to bottom, with the columns they span.
struct Band {
    unsigned top, left, right;
};
std::vector<Band> WhiteBands(const Picture& picture) {
    std::vector<Band> bands;
    bool inBand = false;
    for (unsigned y = 0; y < picture.height; ++y) {
        unsigned left = picture.width, right = 0;
        for (unsigned x = 0; x < picture.width; ++x) {
            if (picture.at(x, y) != 0xFFFFFF) continue;
            left = std::min(left, x);
            right = std::max(right, x);
        }
        const bool white = left <= right;
        if (white && !inBand) bands.push_back({y, left, right});
        if (white && inBand) {
            bands.back().left = std::min(bands.back().left, left);
            bands.back().right = std::max(bands.back().right, right);
        }
        inBand = white;
    }
    return bands;
}

// How much of the progress bar is filled, along a row through its middle: the window is
// three quarters of the 800-pixel screen wide, from x = 100 to 700, the bar kInset within.
double BarShare(const Picture& picture) {
    const unsigned left = 100 + Vantor::CProgress::kInset, right = 700 - Vantor::CProgress::kInset;
    return picture.count(0xFFFFFF, left, 250, right, 251) / double(right - left);
}

}  // namespace

TEST(VantorCommand, AnswersEachWayOfLeavingWithItsStatusAndOutput) {
    const struct {
        const char* args;
        const char* keys;
        int status;
        const char* out;
    } cases[] = {
        {"menu A B C", "down,down,ok", 0, "3\n"},
        {"menu --horizontal A B", "down,select", 0, "2\n"},
        {"menu --tag a 'Slot A' b 'Slot B'", "down,ok", 0, "b\n"},
        {"menu A B", "back", 1, ""},
        {"menu A B", "cancel", 4, ""},
        {"menu A B", "home", 5, ""},
        // Longer than the screen, or than its box: the menu scrolls, a title is cut.
        {"menu $(seq 1 50)", "up,ok", 0, "50\n"},
        {"menu --geometry 0,0,200,100 $(seq 1 30)", "up,up,ok", 0, "29\n"},
        {"menu --horizontal $(seq 100 160)", "up,ok", 0, "61\n"},
        {"menu --title $(printf %0300d 0) A B", "down,ok", 0, "2\n"},
        {"menu A $(printf %0300d 0)", "down,ok", 0, "2\n"},  // wider than the screen: cut
        {"yesno 'Install?'", "ok", 1, ""},  // No is chosen first: a stray press is safe
        {"yesno 'Install?'", "up,ok", 0, ""},
        {"ok 'Done.'", "ok", 0, ""},
        {"ok --ok-cancel 'Go on?'", "ok", 0, ""},  // Ok first: what the question offers
        {"ok --ok-cancel 'Go on?'", "down,ok", 1, ""},
        {"ok --ok-cancel --default-cancel 'Go on?'", "ok", 1, ""},
        {"key", "home", 0, "home\n"},
        {"key --timeout 5", "down", 0, "down\n"},
        {"key --timeout 0.2", "none", 1, ""},
    };
    for (const auto& c : cases) {
        const Outcome run = RunVantor(c.args, c.keys);
        EXPECT_EQ(c.status, run.status) << c.args << " / " << c.keys << ": " << run.err;
        EXPECT_EQ(c.out, run.out) << c.args << " / " << c.keys;
    }
}

// Bad arguments are refused with status 2 before the device is touched; a missing display
// or keypad has a status of its own. Nothing reaches stdout, which is the script's answer.
TEST(VantorCommand, RefusesWhatItCannotDoWithItsOwnStatusAndMessage) {
    const struct {
        const char* args;
        int status;
        const char* message;
    } cases[] = {
        {"", 2, "no command given"},
        {"dance", 2, "unknown command \"dance\""},
        {"menu", 2, "missing menu entries"},
        {"menu --tag a", 2, "TAG ITEM pairs"},
        {"menu --align middle A", 2, "bad --align \"middle\""},
        {"yesno --frobnicate x", 2, "unknown option --frobnicate"},
        {"text --fg red x", 2, "bad --fg \"red\""},
        {"gauge --geometry 0,0,0,10", 2, "bad --geometry"},
        {"gauge --percent 101", 2, "bad --percent"},
        {"copy only-one", 2, "missing SOURCE and TARGET"},
        {"key --timeout -1", 2, "bad --timeout"},
        {"clear extra", 2, "unexpected argument \"extra\""},
        {"menu --device /dev/fb7 A", 8,
         "cannot use the display /dev/fb7: No such file or directory"},
        {"gauge --percent 0x20", 2, "bad --percent \"0x20\""},
        {"key --timeout 1", 7, "no keypad"},
        {"menu --rotate -90 A", 2, "bad --rotate \"-90\""},
        {"console sideways", 2, "give off or on"},
        {"key --keycodes qwerty", 2, "--keycodes \"qwerty\" is not tca8418 or common"},
        {"key --keypad ,", 2, "--keypad \",\""},
    };
    for (const auto& c : cases) {
        const Outcome run = RunVantor(c.args);
        EXPECT_EQ(c.status, run.status) << c.args;
        EXPECT_NE(std::string::npos, run.err.find(c.message)) << c.args << ": " << run.err;
        EXPECT_EQ("", run.out) << c.args;
    }
    EXPECT_EQ(0, RunVantor("menu --help").status);
    // Without --device the display named in the environment is the one used.
    setenv("VANTOR_DEVICE", "/dev/fb7", 1);
    const Outcome named = RunVantor("menu A");
    unsetenv("VANTOR_DEVICE");
    EXPECT_NE(std::string::npos, named.err.find("cannot use the display /dev/fb7")) << named.err;
}

// A board with three buttons only: the simulator sends volume and power keys from a
// device named gpio-keys and tells the command so through the environment; an option
// beats the environment.
TEST(VantorCommand, DrivesAMenuFromTheButtonsItIsToldOf) {
    const std::string sim = std::string(VANTOR_SIM) +
                            " --keypad-name gpio-keys --keycodes common --keys down,down,ok -- ";
    const struct {
        const char* environment;
        const char* args;
        int status;
        const char* out;
    } cases[] = {
        {"", "menu A B C", 0, "3\n"},
        {"VANTOR_KEYPAD=tca8418 ", "menu --keypad gpio-keys A B C", 0, "3\n"},
        {"VANTOR_KEYCODES=tca8418 ", "menu A B C", 3, ""},  // no key it knows: the script ends
    };
    for (const auto& c : cases) {
        const ShellRun run =
            Shell(std::string(c.environment) + sim + VANTOR_CLI + " " + c.args + " 2>/dev/null");
        EXPECT_EQ(c.status, run.status) << c.environment << c.args;
        EXPECT_EQ(c.out, run.output) << c.environment << c.args;
    }
}

// What a script relies on beyond the answer: a writer into the gauge never dies of a
// closed pipe, and an answer that cannot be written is a failure, not a silent 0.
TEST(VantorCommand, NeverLosesTheInputOrTheAnswerQuietly) {
    const std::string vantor = VANTOR_CLI, sim = std::string(VANTOR_SIM) + " --keys ok -- ";
    const struct {
        std::string command;
        std::string output;
    } cases[] = {
        {"seq 1 100000 | { " + vantor + " gauge --device /dev/fb7 2>/dev/null; echo $?; wc -c; }",
         "8\n0\n"},
        {sim + "sh -c '" + vantor + " menu A B >&- 2>/dev/null; echo $? >&2' 2>&1", "9\n"},
        {sim + vantor + " menu A B >/dev/full; echo $?", "9\n"},
        {sim + vantor + " key >/dev/full; echo $?", "9\n"},
        {vantor + " --version >/dev/full; echo $?", "9\n"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.output, Shell(c.command, false).output) << c.command;
    }
}

// Text is wrapped at blanks only; what cannot be shown whole is a failure a script sees,
// and so is a menu entry too wide for any menu the library makes on the screen.
TEST(VantorCommand, WhatDoesNotFitTheScreenFails) {
    const struct {
        const char* args;
        int status;
        const char* message;
    } cases[] = {
        {"text --at 1000,1000 hello", 8, "starts off the 800x480 screen"},
        {"text --at 790,10 hello", 8, "\"hello\" is wider than the 1 character from x=790"},
        {"text --at 700,460 'hello world again'", 8, "1 of 2 lines are left out"},
        {"text --at 700,400 'hello world again'", 0, ""},
        {"menu A $(printf %010000d 0)", 8, "an entry is too wide for any menu on this screen"},
        {"menu --horizontal $(printf %010000d 0) B", 8, "an entry is too wide for any menu"},
    };
    for (const auto& c : cases) {
        const Outcome run = RunVantor(c.args, "none");
        EXPECT_EQ(c.status, run.status) << c.args;
        EXPECT_NE(std::string::npos, run.err.find(c.message)) << c.args << ": " << run.err;
    }
}

TEST(VantorCommand, CopiesWithTheBarAndSaysWhatFailed) {
    const std::string dir = MakeTempDir();
    std::ofstream(dir + "/src") << std::string(300000, 'x');
    Outcome run = RunVantor("copy --share 50 --keep " + dir + "/src " + dir + "/dst", "none", dir);
    EXPECT_EQ(0, run.status) << run.err;
    EXPECT_EQ(ReadFile(dir + "/src"), ReadFile(dir + "/dst"));
    const Picture bar = ReadPng(dir + "/0001.png");
    EXPECT_NEAR(0.5, BarShare(bar), 0.02);

    run = RunVantor("copy " + dir + "/missing " + dir + "/dst2", "none");
    EXPECT_EQ(6, run.status);
    EXPECT_NE(std::string::npos, run.err.find(dir + "/missing")) << run.err;
    // Without a display the file is still copied.
    run = RunVantor("copy --device /dev/fb7 " + dir + "/src " + dir + "/dst3");
    EXPECT_EQ(0, run.status) << run.err;
    EXPECT_EQ(ReadFile(dir + "/src"), ReadFile(dir + "/dst3"));
}

// Arguments are UTF-8, and Latin-1 bytes that are no UTF-8 still show their letters.
TEST(VantorCommand, ShowsUtf8AndLatin1Letters) {
    const std::string utf8 = MakeTempDir(), latin1 = MakeTempDir();
    RunVantor("menu \"$(printf 'Gr\\303\\274\\303\\237e')\"", "ok", utf8);
    RunVantor("menu \"$(printf 'Gr\\374\\337e')\"", "ok", latin1);
    EXPECT_EQ(ReadFile(utf8 + "/0001.png"), ReadFile(latin1 + "/0001.png"));
}

TEST(VantorCommand, DrawsWhatAScriptAskedFor) {
    const std::string text = MakeTempDir();
    ASSERT_EQ(0, RunVantor("text --fg FFB000 --at 10,10 Recovery", "none", text).status);
    const Picture shown = ReadPng(text + "/0001.png");
    EXPECT_GT(shown.count(0xFFB000, 10, 10, 74, 26), 40);  // the word, still there at exit
    EXPECT_EQ(0, shown.count(0xFFB000, 74, 0, 800, 480));

    // The XXX block's percentage moves the bar; --keep leaves the window at the end.
    const std::string gauge = MakeTempDir();
    ASSERT_EQ(0,
              RunVantor("gauge --keep", "none", gauge, "10\\nXXX\\n75\\nAlmost\\nXXX\\n").status);
    EXPECT_NEAR(0.75, BarShare(ReadPng(gauge + "/0001.png")), 0.02);
    // Only decimal numbers move it: 0x20 is not 32, 1e2 not 100.
    const std::string decimal = MakeTempDir();
    ASSERT_EQ(0, RunVantor("gauge --keep", "none", decimal, "40\\n0x20\\n1e2\\ninf\\n").status);
    EXPECT_NEAR(0.4, BarShare(ReadPng(decimal + "/0001.png")), 0.02);
    const std::string gone = MakeTempDir();
    ASSERT_EQ(0, RunVantor("gauge", "none", gone, "50\\n").status);
    EXPECT_NE(0, access((gone + "/0001.png").c_str(), F_OK));  // the screen is blank again

    // A long line is wrapped inside the dialog's box, not run past its edge.
    const std::string dialog = MakeTempDir();
    ASSERT_EQ(1, RunVantor("yesno --geometry 100,100,200,120 'one two three four five six seven "
                           "eight nine ten'",
                           "ok", dialog)
                     .status);
    const Picture box = ReadPng(dialog + "/0001.png");
    EXPECT_GT(box.count(0xFFFFFF, 100, 118, 300, 134), 20);  // the second line
    EXPECT_EQ(0, box.count(0xFFFFFF, 300, 100, 800, 220));
}

// The title sits over the entries as --align places them, and an empty entry, once
// selected, still shows where the selection is.
TEST(VantorCommand, MenuTitleFollowsTheAlignmentAndAnEmptyEntryShowsItsHighlight) {
    const std::string right = MakeTempDir();
    ASSERT_EQ(0,
              RunVantor("menu --align right --title Title A 'Longer entry'", "ok", right).status);
    const std::vector<Band> bands = WhiteBands(ReadPng(right + "/0001.png"));
    ASSERT_EQ(3u, bands.size());  // the title, A (selected), the longer entry
    EXPECT_NEAR(bands[2].right, bands[0].right, 2);
    EXPECT_GT(bands[0].left, bands[2].left + 20);

    const std::string wide = MakeTempDir();  // a title wider than its menu is shown whole
    ASSERT_EQ(0, RunVantor("menu --title Title A", "ok", wide).status);
    const std::vector<Band> titled = WhiteBands(ReadPng(wide + "/0001.png"));
    ASSERT_EQ(2u, titled.size());
    EXPECT_GT(titled[0].right - titled[0].left, 4u * 8);  // more than four 8-pixel cells

    const std::string empty = MakeTempDir();
    ASSERT_EQ(0, RunVantor("menu A '' C", "down,ok", empty).status);
    EXPECT_EQ(3u, WhiteBands(ReadPng(empty + "/0002.png")).size());  // A, the highlight, C
}

// Starting on Ok changes nothing else: once Cancel is selected the screen is the one the
// dialog that starts on Cancel shows.
TEST(VantorCommand, OkFirstDialogLooksLikeTheLibrarysOwn) {
    const std::string okFirst = MakeTempDir(), cancelFirst = MakeTempDir();
    ASSERT_EQ(1, RunVantor("ok --ok-cancel 'Go on?' 'Two lines'", "down,ok", okFirst).status);
    ASSERT_EQ(1,
              RunVantor("ok --ok-cancel --default-cancel 'Go on?' 'Two lines'", "ok", cancelFirst)
                  .status);
    EXPECT_TRUE(ReadPng(okFirst + "/0002.png").rgb == ReadPng(cancelFirst + "/0001.png").rgb);
    EXPECT_FALSE(ReadPng(okFirst + "/0001.png").rgb == ReadPng(cancelFirst + "/0001.png").rgb);
}

// A panel mounted turned: the simulator's picture is the panel's own, portrait for a
// landscape layout at 90 degrees, with the layout's top-left corner at its top-right. A
// script's console commands are no failure where there is no virtual terminal.
TEST(VantorCommand, TurnsThePictureForThePanelAndLeavesAMissingConsoleAlone) {
    const std::string dir = MakeTempDir(), cli = VANTOR_CLI;
    ASSERT_EQ(0, Shell(std::string(VANTOR_SIM) + " --no-view --shots " + dir +
                       " --rotate 90 --keys none -- sh -c '" + cli + " text --at 0,0 Turn && " +
                       cli + " console off && " + cli + " console on'")
                     .status);
    const Picture panel = ReadPng(dir + "/0001.png");
    ASSERT_EQ(480u, panel.width);
    EXPECT_GT(panel.count(0xFFFFFF, 464, 0, 480, 32), 20);  // "Turn", 32 x 16, turned
    EXPECT_EQ(panel.count(0xFFFFFF, 0, 0, 480, 800), panel.count(0xFFFFFF, 464, 0, 480, 32));
    EXPECT_EQ(2, Shell("VANTOR_ROTATION=45 " + cli + " clear").status);
}
