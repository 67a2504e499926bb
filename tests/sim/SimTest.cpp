// The simulator: its key scripts, its PNG files, and a whole run of the demo.
#include <gtest/gtest.h>
#include <png.h>
#include <sys/wait.h>

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "KeyScript.h"
#include "PngWriter.h"

using namespace VantorSim;

namespace {

const char kDemoKeys[] = "ok, left, ok, none, ok, down, ok, ok, down, down, ok, left, ok";

struct Picture {
    unsigned width = 0, height = 0;
    std::vector<uint8_t> rgb;
    uint32_t at(unsigned x, unsigned y) const {
        const uint8_t* p = &rgb[(size_t(y) * width + x) * 3];
        return uint32_t(p[0]) << 16 | uint32_t(p[1]) << 8 | p[2];
    }
};

Picture ReadPng(const std::string& path) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str())) throw std::runtime_error(path);
    image.format = PNG_FORMAT_RGB;
    Picture picture{image.width, image.height, std::vector<uint8_t>(PNG_IMAGE_SIZE(image))};
    png_image_finish_read(&image, nullptr, picture.rgb.data(), 0, nullptr);
    return picture;
}

struct SimRun {
    int status;
    std::string output;
};

SimRun Simulate(const std::string& arguments) {
    FILE* pipe =
        popen((std::string(VANTOR_SIM) + " " + arguments + " 2>&1 </dev/null").c_str(), "r");
    SimRun run{-1, ""};
    char line[512];
    while (std::fgets(line, sizeof(line), pipe)) run.output += line;
    run.status = WEXITSTATUS(pclose(pipe));
    return run;
}

std::string TempDir() {
    char pattern[] = "/tmp/vantor-sim-test-XXXXXX";
    return mkdtemp(pattern);
}

}  // namespace

TEST(KeyScript, NamesCodesSkipsPausesAndComments) {
    const std::vector<KeyStep> steps =
        ParseKeyScript("down,Down  ok # the first choice\n149 none pause:0.25\n");
    const std::vector<KeyStep> expected = {{KeyStep::Press, 7, 0},  {KeyStep::Press, 7, 0},
                                           {KeyStep::Press, 50, 0}, {KeyStep::Press, 149, 0},
                                           {KeyStep::Skip, 0, 0},   {KeyStep::Pause, 0, 0.25}};
    EXPECT_EQ(expected, steps);
    EXPECT_EQ(expected, DecodeKeyScript(EncodeKeyScript(steps)));
    for (const char* bad : {"okay", "0", "pause:-1", "pause:x", "70000"}) {
        EXPECT_THROW(ParseKeyScript(bad), std::invalid_argument) << bad;
    }
    EXPECT_EQ(150, KeyCodeOf("back"));
    EXPECT_EQ(53, KeyCodeOf("cancel"));
}

TEST(PngWriter, WritesScaledPixelsThatDecodeBack) {
    const uint32_t screen[] = {0x112233, 0xFF0000, 0x00FF00, 0x0000FF, 0xFFFFFF, 0x000000};
    const std::string path = TempDir() + "/screen.png";
    ASSERT_TRUE(WritePng(path, screen, 2, 2, 3, 2));  // rows of 3 pixels, the third not shown
    const Picture picture = ReadPng(path);
    ASSERT_EQ(4u, picture.width);
    ASSERT_EQ(4u, picture.height);
    EXPECT_EQ(0x112233u, picture.at(0, 0));
    EXPECT_EQ(0x112233u, picture.at(1, 1));
    EXPECT_EQ(0xFF0000u, picture.at(3, 0));
    EXPECT_EQ(0x0000FFu, picture.at(0, 3));
    EXPECT_EQ(0xFFFFFFu, picture.at(3, 3));
    EXPECT_FALSE(WritePng("/nonexistent/dir/x.png", screen, 2, 2, 3, 1));
}

TEST(Simulator, RunsTheDemoToItsEndWithAPictureAtEveryWait) {
    const std::string shots = TempDir();
    const SimRun run = Simulate("--screen 800x480 --shots " + shots + " --keys '" + kDemoKeys +
                                "' -- " + VANTOR_DEMO + " /dev/fb0 800x480");
    ASSERT_EQ(0, run.status) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("14 screenshots in " + shots));

    const Picture menu = ReadPng(shots + "/0001.png");
    ASSERT_EQ(800u, menu.width);
    EXPECT_EQ(0xFFFFFFu, menu.at(45, 115));  // "Install update" highlighted (cells start 5 in)
    EXPECT_EQ(0u, menu.at(45, 139));         // "Show device info" is not

    const Picture dialog = ReadPng(shots + "/0002.png");
    EXPECT_EQ(0u, dialog.at(200, 180));  // the dialog box is black over the home screen

    const Picture copying = ReadPng(shots + "/0004.png");
    int filled = 0;
    for (unsigned x = 156; x < 644; ++x) filled += copying.at(x, 257) == 0xFFFFFF;
    EXPECT_NEAR(0.75, filled / 488.0, 0.02);  // the kernel is 75 percent of the whole update

    const Picture end = ReadPng(shots + "/0014.png");
    for (unsigned x = 0; x < 800; x += 7) ASSERT_EQ(0u, end.at(x, 15));  // cleared at exit
}

TEST(Simulator, RefusesWhatItCannotRun) {
    SimRun run = Simulate("--keys ok -- /bin/true");
    EXPECT_EQ(2, run.status);
    EXPECT_NE(std::string::npos, run.output.find("not linked against libvantor"));
    run = Simulate("--keys ok -- /nonexistent/program");
    EXPECT_EQ(127, run.status);
    EXPECT_NE(std::string::npos, run.output.find("cannot run /nonexistent/program"));
    run = Simulate("--screen 800 -- /bin/true");
    EXPECT_EQ(2, run.status);
    run = Simulate("-- " + std::string(VANTOR_DEMO));  // no keys and no terminal
    EXPECT_EQ(2, run.status);
    EXPECT_NE(std::string::npos, run.output.find("no keys"));
}

TEST(Simulator, StopsAProgramThatOutlivesItsKeyScript) {
    const SimRun run = Simulate(std::string("--keys ok -- ") + VANTOR_DEMO);
    EXPECT_EQ(3, run.status);
    EXPECT_NE(std::string::npos, run.output.find("key script is used up"));
}
