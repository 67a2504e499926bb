// vantor-sim: runs an unmodified host program of libvantor against a virtual display
// and keypad, with keys from a script or the terminal and screenshots as PNG files.
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "KeyScript.h"
#include "Panel.h"

namespace {

using VantorSim::Panel;

const char kUsage[] =
    "usage: vantor-sim [options] -- PROGRAM [ARGS...]\n"
    "\n"
    "Runs PROGRAM (dynamically linked against libvantor) with a virtual framebuffer and\n"
    "a virtual TCA8418 keypad in place of the real ones.\n"
    "\n"
    "  --screen WxH        screen size in pixels, 32 bits per pixel (default 800x480)\n"
    "  --fb PATH           the device path the program opens (default /dev/fb0)\n"
    "  --format NAME       the panel's pixel layout: xrgb8888 (default), xbgr8888,\n"
    "                      rgbx8888, bgrx8888, rgb888, bgr888, rgb565, bgr565\n"
    "  --pad BYTES         padding at the end of every row of screen memory\n"
    "  --pan X,Y           the visible page starts at (X, Y) of a larger virtual screen\n"
    "  --keys LIST         keys to press, one at each wait for a key: up, down, left,\n"
    "                      right, ok, select, back, home, cancel, a device code, none\n"
    "                      (a wait without a key) or pause:SECONDS; e.g. down,down,ok\n"
    "  --key-file FILE     the same from a file (# starts a comment)\n"
    "                      Without keys, and on a terminal, keys are read as you type:\n"
    "                      arrows move, Enter chooses, Backspace back, Esc cancel,\n"
    "                      h home, q quits.\n"
    "  --shots DIR         a PNG of the screen each time the program waits for a key\n"
    "                      (when the screen changed) and when it ends: DIR/0001.png...\n"
    "  --shot-on-update    a PNG after every Update() as well\n"
    "  --scale N           enlarge each screen pixel to N x N in the PNG files\n"
    "  --fonts DIR         lr.tf and lb.tf from DIR instead of the installed fonts\n"
    "  -h, --help          this text\n";

struct Options {
    std::string screen = "800x480", fb = "/dev/fb0", shots, fonts;
    std::vector<VantorSim::KeyStep> keys;
    bool keysGiven = false, shotOnUpdate = false;
    int scale = 1;
    VantorSim::Panel panel;
    std::vector<char*> program;
};

[[noreturn]] void Fail(const std::string& message) {
    std::fprintf(stderr, "vantor-sim: %s\n", message.c_str());
    std::exit(2);
}

std::string Value(int& i, int argc, char** argv) {
    if (i + 1 >= argc) Fail(std::string(argv[i]) + " needs a value (see --help)");
    return argv[++i];
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path);
    if (!in) Fail("cannot read the key file " + path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

void AddKeys(Options& options, const std::string& text) {
    try {
        for (const auto& step : VantorSim::ParseKeyScript(text)) options.keys.push_back(step);
        options.keysGiven = true;
    } catch (const std::invalid_argument& error) {
        Fail(error.what());
    }
}

Options Parse(int argc, char** argv) {
    Options options;
    int i = 1;
    for (; i < argc && std::strcmp(argv[i], "--") != 0; ++i) {
        const std::string arg = argv[i];
        if (arg == "-h" || arg == "--help") {
            std::fputs(kUsage, stdout);
            std::exit(0);
        } else if (arg == "--screen") {
            options.screen = Value(i, argc, argv);
            int w = 0, h = 0;
            char extra = 0;
            if (std::sscanf(options.screen.c_str(), "%dx%d%c", &w, &h, &extra) != 2 || w < 1 ||
                h < 1 || w > 8192 || h > 8192) {
                Fail("bad --screen \"" + options.screen + "\": give WIDTHxHEIGHT, e.g. 800x480");
            }
        } else if (arg == "--fb") {
            options.fb = Value(i, argc, argv);
            if (options.fb.rfind("/dev/fb", 0) != 0) Fail("--fb must name a /dev/fb... path");
        } else if (arg == "--keys") {
            AddKeys(options, Value(i, argc, argv));
        } else if (arg == "--key-file") {
            AddKeys(options, ReadFile(Value(i, argc, argv)));
        } else if (arg == "--format") {
            const std::string name = Value(i, argc, argv);
            if (!VantorSim::Panel::ParseFormat(name, options.panel.layout))
                Fail("unknown --format " + name + " (see --help)");
        } else if (arg == "--pad") {
            options.panel.padBytes = std::atoi(Value(i, argc, argv).c_str());
            if (options.panel.padBytes < 0 || options.panel.padBytes > 4096)
                Fail("--pad is 0 to 4096 bytes");
        } else if (arg == "--pan") {
            Panel& panel = options.panel;
            if (std::sscanf(Value(i, argc, argv).c_str(), "%d,%d", &panel.panX, &panel.panY) != 2 ||
                panel.panX < 0 || panel.panY < 0 || panel.panX > 4096 || panel.panY > 4096)
                Fail("bad --pan: give X,Y from 0 to 4096, e.g. 0,480");
        } else if (arg == "--shots") {
            options.shots = Value(i, argc, argv);
        } else if (arg == "--shot-on-update") {
            options.shotOnUpdate = true;
        } else if (arg == "--scale") {
            options.scale = std::atoi(Value(i, argc, argv).c_str());
            if (options.scale < 1 || options.scale > 16) Fail("--scale is 1 to 16");
        } else if (arg == "--fonts") {
            options.fonts = Value(i, argc, argv);
        } else {
            Fail("unknown option " + arg + " (see --help)");
        }
    }
    for (++i; i < argc; ++i) options.program.push_back(argv[i]);
    if (options.program.empty())
        Fail("no program to run: vantor-sim [options] -- PROGRAM [ARGS...]");
    options.program.push_back(nullptr);
    return options;
}

bool IsDirectory(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool IsFile(const std::string& path) {
    return access(path.c_str(), R_OK) == 0;
}

std::string ExecutableDirectory() {
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof(path) - 1);
    if (length <= 0) return ".";
    path[length] = '\0';
    return std::string(path).substr(0, std::string(path).rfind('/'));
}

// The two objects to preload: beside this program in a build tree, or where they are
// installed.
std::string FindLibrary(const char* name, const char* builtIn) {
    for (const std::string& dir : {ExecutableDirectory(), std::string(builtIn),
                                   ExecutableDirectory() + "/../" VANTOR_SIM_LIBDIR "/vantor"}) {
        if (IsFile(dir + "/" + name)) return dir + "/" + name;
    }
    Fail(std::string("cannot find ") + name + " (is the simulator installed whole?)");
}

std::string FindFonts(const std::string& given) {
    const std::string candidates[] = {given, "/usr/share/fonts/vantor", VANTOR_SIM_BUILD_FONTS};
    for (const std::string& dir : candidates) {
        if (!dir.empty() && IsFile(dir + "/lr.tf") && IsFile(dir + "/lb.tf")) return dir;
    }
    if (!given.empty()) Fail("no lr.tf and lb.tf in " + given);
    Fail("no fonts installed: give --fonts DIR holding lr.tf and lb.tf");
}

void Export(const Options& options) {
    const std::string preload = FindLibrary("libvantor-platform.so", VANTOR_SIM_PLATFORM_DIR) +
                                ":" + FindLibrary("libvantor-sim.so", VANTOR_SIM_DRIVER_DIR);
    setenv("LD_PRELOAD", preload.c_str(), 1);
    setenv("VANTOR_SIM_PARENT", std::to_string(getpid()).c_str(), 1);
    setenv("VANTOR_SIM_SCREEN", options.screen.c_str(), 1);
    setenv("VANTOR_SIM_FB", options.fb.c_str(), 1);
    setenv("VANTOR_SIM_PANEL", options.panel.Encode().c_str(), 1);
    setenv("VANTOR_SIM_FONTS", FindFonts(options.fonts).c_str(), 1);
    setenv("VANTOR_SIM_KEYS", VantorSim::EncodeKeyScript(options.keys).c_str(), 1);
    setenv("VANTOR_SIM_SCALE", std::to_string(options.scale).c_str(), 1);
    setenv("VANTOR_SIM_SHOTS", options.shots.c_str(), 1);
    if (options.shotOnUpdate) setenv("VANTOR_SIM_SHOT_ON_UPDATE", "1", 1);
    if (!options.keysGiven) {
        if (!isatty(STDIN_FILENO)) Fail("no keys: give --keys or --key-file, or run in a terminal");
        setenv("VANTOR_SIM_TERMINAL", "1", 1);
    }
    // Sanitized builds of the program must accept a preloaded object ahead of their runtime.
    const char* asan = std::getenv("ASAN_OPTIONS");
    setenv("ASAN_OPTIONS", (std::string(asan ? asan : "") + ":verify_asan_link_order=0").c_str(),
           1);
}

}  // namespace

int main(int argc, char** argv) {
    Options options = Parse(argc, argv);
    if (!options.shots.empty()) {
        std::system(("mkdir -p '" + options.shots + "'").c_str());
        if (!IsDirectory(options.shots))
            Fail("cannot make the screenshot directory " + options.shots);
    }
    Export(options);
    const pid_t child = fork();
    if (child < 0) Fail(std::string("cannot start the program: ") + std::strerror(errno));
    if (child == 0) {
        execvp(options.program[0], options.program.data());
        std::fprintf(stderr, "vantor-sim: cannot run %s: %s\n", options.program[0],
                     std::strerror(errno));
        _exit(127);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFSIGNALED(status)) {
        std::fprintf(stderr, "vantor-sim: %s ended by signal %d\n", options.program[0],
                     WTERMSIG(status));
        return 128 + WTERMSIG(status);
    }
    return WEXITSTATUS(status);
}
