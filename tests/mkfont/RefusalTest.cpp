// What the converter cannot do faithfully it refuses: a message naming the problem, exit
// status 1, no temporary file, and the font it would have replaced left as it was.
#include <sys/stat.h>

#include <filesystem>

#include "FontFixtures.h"

namespace MkfontTest {
namespace {

std::string Replace(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}

// A proportional BDF whose glyph 'A' is 7 pixels wide.
std::string ProportionalBdf() {
    std::string text = Replace(Bdf({65, 66}), "SPACING \"C\"", "SPACING \"P\"");
    text = Replace(text, "-c-50-", "-p-50-");
    return Replace(text, "DWIDTH 5 0\nBBX 5 7 0 -1", "DWIDTH 8 0\nBBX 7 7 0 -1");
}

TEST_F(Mkfont, BadInputIsRefusedAndLeavesTheFilesAsTheyWere) {
    Write("small.bdf", Bdf({65}));
    Write("prop.bdf", ProportionalBdf());
    std::string psf = Psf2({65, 66, 67, 68});
    Write("short.psfu", psf.substr(0, psf.size() - 20));
    Write("huge.psfu", psf.replace(28, 4, "\xFF\xFF\xFF\x7F"));  // a width of 2^31-1
    mkdir(Path("adir").c_str(), 0755);
    Write("out.tf", "the old font");
    const std::string out = " -o " + Path("out.tf");
    const std::pair<std::string, std::string> cases[] = {
        {Path("missing.bdf") + out, "cannot read font file"},
        {Path("small.bdf") + " --codepage KOI9" + out, "unknown code page"},
        {Path("small.bdf") + " --codes 0-300" + out, "bad code list"},
        {Path("small.bdf") + " --codes 126-32" + out, "reversed"},
        {Path("small.bdf") + " --size 8x" + out, "bad --size height"},
        {Path("small.bdf") + " --size 9" + out, "no 9-pixel size"},
        {Path("small.bdf") + " --bogus" + out, "unknown option"},
        {Path("small.bdf") + " --codes", "--codes needs a value"},
        {Path("small.bdf"), "-o OUTPUT.tf"},
        {Path("small.bdf") + " --codes 66" + out, "none of the asked codes"},
        {Path("prop.bdf") + out, "proportional font"},
        {Path("prop.bdf") + " --size 6x7" + out, "U+0041 (code 65) is 7 pixels wide"},
        {Path("short.psfu") + out, "truncated"},
        {Path("huge.psfu") + out, "inconsistent"},
        {Path("short.psfu") + " --size 16" + out, "--size does not apply"},
        {Path("small.bdf") + " -o " + Path("none/out.tf"), "cannot write in the directory"},
        {Path("small.bdf") + " -o " + Path("adir"), "Is a directory"},
        {"--show " + Path("missing.tf"), "cannot load"},
        {"--show " + Path("a.tf") + " --sheet " + Path("a.tf") + " a.png", "cannot be combined"},
    };
    for (const auto& [arguments, message] : cases) {
        const ShellRun run = Tool(arguments);
        EXPECT_EQ(1, run.status) << arguments;
        EXPECT_NE(std::string::npos, run.output.find(message)) << arguments << "\n" << run.output;
        EXPECT_EQ(0u, run.output.find("vantor-mkfont: ")) << run.output;
    }
    EXPECT_EQ("the old font", VantorTest::ReadFile(Path("out.tf")));
    const std::filesystem::directory_iterator files(dir);
    EXPECT_EQ(6, std::distance(files, std::filesystem::directory_iterator()));  // as written
}

}  // namespace
}  // namespace MkfontTest
