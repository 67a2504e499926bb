// SPDX-License-Identifier: MIT
// vantor-sim: runs an unmodified host program of libvantor, or a script of several,
// against one virtual display and keypad, with keys from a script or the terminal,
// screenshots as PNG files and a view on the terminal.
#include <dirent.h>
#include <signal.h>
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
#include "SessionDirectory.h"
#include "SessionState.h"
#include "Supervisor.h"
#include "TerminalKeys.h"

namespace {

using VantorSim::Panel;

const char kUsage[] =
    "usage: vantor-sim [options] -- PROGRAM [ARGS...]\n"
    "\n"
    "Runs PROGRAM with a virtual framebuffer and a virtual TCA8418 keypad in place of\n"
    "the real ones. PROGRAM and every process it starts share them: a shell script's\n"
    "commands draw on one screen, which keeps its pixels between them, and take the\n"
    "keys one after the other. Programs may link libvantor or load it at run time\n"
    "(dlopen, Python's ctypes); statically linked programs are not simulated.\n"
    "\n"
    "  --screen WxH        screen size in pixels, 32 bits per pixel (default 800x480)\n"
    "  --fb PATH           the device path the program opens (default /dev/fb0)\n"
    "  --drm               a DRM card at /dev/dri/card0 (a built-in panel, XRGB8888)\n"
    "                      instead of the framebuffer device; there is no /dev/fb0\n"
    "  --format NAME       the panel's pixel layout: xrgb8888 (default), xbgr8888,\n"
    "                      rgbx8888, bgrx8888, rgb888, bgr888, rgb565, bgr565\n"
    "  --pad BYTES         padding at the end of every row of screen memory\n"
    "  --pan X,Y           the visible page starts at (X, Y) of a larger virtual screen\n"
    "  --rotate DEG        the panel is mounted turned DEG degrees clockwise (0, 90,\n"
    "                      180, 270): --screen stays the picture programs lay out,\n"
    "                      the panel is its turned shape (portrait for 90 and 270)\n"
    "                      and the PNG files show the panel's pixels. The vantor\n"
    "                      command turns its picture by itself (VANTOR_ROTATION is\n"
    "                      set); other programs call setRotation\n"
    "  --keys LIST         keys to press, one at each wait for a key: up, down, ok,\n"
    "                      select, back, cancel, home (each delivers the VANTOR_KEY_*\n"
    "                      code of that name), left and right (the same as up and\n"
    "                      down), a device code, none (a wait without a key) or\n"
    "                      pause:SECONDS; e.g. down,down,ok\n"
    "  --key-file FILE     the same from a file (# starts a comment)\n"
    "                      Without keys, and on a terminal, keys are read as you type:\n"
    "                      arrows move, Enter is ok, Space select, Backspace back,\n"
    "                      Esc cancel, h home, q quits; the program's standard\n"
    "                      input is then /dev/null.\n"
    "  --keypad-name NAME  the key device's input name (default \"tca8418 keypad\n"
    "                      (vantor-sim)\"), e.g. gpio-keys or adc-keys\n"
    "  --keycodes SET      the codes the key names send: tca8418 (default) or common\n"
    "                      (up, down and ok are volume up, volume down and power,\n"
    "                      left and right the arrows, select Space, back Backspace,\n"
    "                      cancel Esc, home Home; typed keys are a keyboard's)\n"
    "                      With either, the program's VANTOR_KEYPAD and\n"
    "                      VANTOR_KEYCODES are set to match unless already set.\n"
    "  --shots DIR         a PNG of the screen each time a program waits for a key\n"
    "                      and when a program of the library ends, if the screen\n"
    "                      changed: DIR/0001.png, numbered across the whole run;\n"
    "                      no picture while nothing was drawn. Numbered PNGs of an\n"
    "                      earlier run in DIR are removed first; other files stay\n"
    "  --shot-on-update    a PNG after every Update() and progress window repaint too\n"
    "  --scale N           enlarge each screen pixel to N x N in the PNG files\n"
    "  --no-view           do not draw the screen on the terminal (it is drawn on\n"
    "                      standard error, at the same moments, when that is one)\n"
    "  --fonts DIR         lr.tf and lb.tf from DIR instead of the installed fonts\n"
    "  -h, --help          this text\n"
    "\n"
    "Exit status: the program's; 3 when the key script ran out while a program\n"
    "waited for a key; 0 when q quit it from the terminal; 128+N when it ended by\n"
    "signal N; 127 when PROGRAM cannot be run; 2 for bad options.\n";

struct Options {
    std::string screen = "800x480", fb = "/dev/fb0", shots, fonts, rotate;
    std::string keypadName, keyCodes;
    std::vector<std::string> keyTexts;  // parsed once --keycodes is known
    std::vector<VantorSim::KeyStep> keys;
    bool keysGiven = false, shotOnUpdate = false, view = true, drm = false;
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
    if (!in) Fail("cannot read the key file " + path + ": " + std::strerror(errno));
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

void AddKeys(Options& options, const std::string& text) {
    options.keyTexts.push_back(text);
    options.keysGiven = true;
}

void ParseKeys(Options& options) {
    const VantorSim::KeyCodes codes =
        options.keyCodes == "common" ? VantorSim::KeyCodes::Common : VantorSim::KeyCodes::TCA8418;
    try {
        for (const std::string& text : options.keyTexts) {
            for (const auto& step : VantorSim::ParseKeyScript(text, codes))
                options.keys.push_back(step);
        }
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
        } else if (arg == "--drm") {
            options.drm = true;
        } else if (arg == "--keys") {
            AddKeys(options, Value(i, argc, argv));
        } else if (arg == "--key-file") {
            AddKeys(options, ReadFile(Value(i, argc, argv)));
        } else if (arg == "--keypad-name") {
            options.keypadName = Value(i, argc, argv);
            if (options.keypadName.empty() || options.keypadName.size() > 255 ||
                options.keypadName.find_first_of(",\n") != std::string::npos)
                Fail("--keypad-name is 1 to 255 characters, without commas or new lines");
        } else if (arg == "--keycodes") {
            options.keyCodes = Value(i, argc, argv);
            if (options.keyCodes != "tca8418" && options.keyCodes != "common")
                Fail("--keycodes is tca8418 or common");
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
        } else if (arg == "--rotate") {
            options.rotate = Value(i, argc, argv);
            if (options.rotate != "0" && options.rotate != "90" && options.rotate != "180" &&
                options.rotate != "270")
                Fail("--rotate is 0, 90, 180 or 270");
        } else if (arg == "--shots") {
            options.shots = Value(i, argc, argv);
        } else if (arg == "--shot-on-update") {
            options.shotOnUpdate = true;
        } else if (arg == "--scale") {
            options.scale = std::atoi(Value(i, argc, argv).c_str());
            if (options.scale < 1 || options.scale > 16) Fail("--scale is 1 to 16");
        } else if (arg == "--no-view") {
            options.view = false;
        } else if (arg == "--fonts") {
            options.fonts = Value(i, argc, argv);
        } else {
            Fail("unknown option " + arg + " (see --help)");
        }
    }
    if (options.drm && options.panel.Encode() != VantorSim::Panel().Encode())
        Fail("--format, --pad and --pan describe a framebuffer device, not a --drm card");
    ParseKeys(options);
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

// The path without "..", for messages and the environment a person may look at.
std::string Canonical(const std::string& path) {
    char resolved[PATH_MAX];
    return realpath(path.c_str(), resolved) ? resolved : path;
}

// Where the simulator's parts are, relative to this program: first as installed, then
// as a build tree lays them out. Nothing absolute is built in, so an installed tree may
// be moved anywhere and a build tree may be deleted.
std::string FindLibrary(const char* name) {
    const std::string here = ExecutableDirectory();
    for (const std::string& dir :
         {here + "/" VANTOR_SIM_INSTALLED_LIBS, here, here + "/" VANTOR_SIM_BUILT_PLATFORM}) {
        if (IsFile(dir + "/" + name)) return Canonical(dir + "/" + name);
    }
    Fail(std::string("cannot find ") + name + " near " + here +
         " (is the simulator installed whole?)");
}

bool HasFonts(const std::string& dir) {
    return IsFile(dir + "/lr.tf") && IsFile(dir + "/lb.tf");
}

std::string FindFonts(const std::string& given) {
    if (!given.empty()) {
        if (!IsDirectory(given)) Fail("--fonts " + given + ": no such directory");
        if (!HasFonts(given)) Fail("--fonts " + given + ": lr.tf and lb.tf are not both there");
        return Canonical(given);
    }
    const std::string here = ExecutableDirectory();
    for (const std::string& dir :
         {here + "/" VANTOR_SIM_INSTALLED_FONTS, here + "/" VANTOR_SIM_BUILT_FONTS,
          std::string("/usr/share/fonts/vantor")}) {
        if (HasFonts(dir)) return Canonical(dir);
    }
    Fail("no fonts installed: give --fonts DIR holding lr.tf and lb.tf");
}

// The panel: the picture's size, turned on its side for a quarter turn.
std::string PanelSize(const Options& options) {
    if (options.rotate != "90" && options.rotate != "270") return options.screen;
    const size_t x = options.screen.find('x');
    return options.screen.substr(x + 1) + "x" + options.screen.substr(0, x);
}

// The environment every process of the session inherits; set in the child only.
struct Environment {
    std::vector<std::pair<std::string, std::string>> values;
    void Set(const char* name, const std::string& value) { values.emplace_back(name, value); }
};

Environment environment;

Environment Prepare(const Options& options, const std::string& session) {
    Environment env;
    env.Set("LD_PRELOAD",
            FindLibrary("libvantor-platform.so") + ":" + FindLibrary("libvantor-sim.so"));
    env.Set("VANTOR_SIM_SESSION", session);
    env.Set("VANTOR_SIM_SCREEN", PanelSize(options));
    if (!options.rotate.empty()) env.Set("VANTOR_ROTATION", options.rotate);
    env.Set("VANTOR_SIM_FB", options.fb);
    env.Set("VANTOR_SIM_PANEL", options.panel.Encode());
    if (options.drm) env.Set("VANTOR_SIM_DRM", "1");
    env.Set("VANTOR_SIM_FONTS", FindFonts(options.fonts));
    env.Set("VANTOR_SIM_KEYS", VantorSim::EncodeKeyScript(options.keys));
    env.Set("VANTOR_SIM_SCALE", std::to_string(options.scale));
    env.Set("VANTOR_SIM_SHOTS", options.shots);
    if (options.shotOnUpdate) env.Set("VANTOR_SIM_SHOT_ON_UPDATE", "1");
    if (options.view && isatty(STDERR_FILENO)) env.Set("VANTOR_SIM_VIEW", "1");
    if (!options.keysGiven) env.Set("VANTOR_SIM_TERMINAL", "1");
    // A program of ours then looks for the device and codes the session presents.
    if (!options.keypadName.empty() && std::getenv("VANTOR_KEYPAD") == nullptr)
        env.Set("VANTOR_KEYPAD", options.keypadName);
    if (!options.keyCodes.empty() && std::getenv("VANTOR_KEYCODES") == nullptr)
        env.Set("VANTOR_KEYCODES", options.keyCodes);
    // Sanitized builds of the program must accept a preloaded object ahead of their runtime.
    const char* asan = std::getenv("ASAN_OPTIONS");
    env.Set("ASAN_OPTIONS", std::string(asan ? asan : "") + ":verify_asan_link_order=0");
    return env;
}

void ExportEnvironment() {
    for (const auto& [name, value] : environment.values) setenv(name.c_str(), value.c_str(), 1);
}

// Our own pictures are named by number alone (0001.png); anything else is the user's.
bool IsOurPicture(const std::string& name) {
    return name.size() >= 8 && name.compare(name.size() - 4, 4, ".png") == 0 &&
           name.find_first_not_of("0123456789") == name.size() - 4;
}

// Pictures of an earlier run would mix with this one's under the same numbers, so they
// go first; the user's other files stay.
void RemoveEarlierShots(const std::string& dir) {
    DIR* listing = opendir(dir.c_str());
    if (listing == nullptr)
        Fail("cannot read the screenshot directory " + dir + ": " + std::strerror(errno));
    int removed = 0;
    while (const dirent* entry = readdir(listing)) {
        if (!IsOurPicture(entry->d_name)) continue;
        if (unlinkat(dirfd(listing), entry->d_name, 0) != 0) {
            const int error = errno;
            closedir(listing);
            Fail("cannot remove the earlier screenshot " + dir + "/" + entry->d_name + ": " +
                 std::strerror(error));
        }
        ++removed;
    }
    closedir(listing);
    if (removed > 0) {
        std::fprintf(stderr, "vantor-sim: removed %d earlier screenshot%s from %s\n", removed,
                     removed == 1 ? "" : "s", dir.c_str());
    }
}

void MakeShotDirectory(const std::string& dir) {
    if (dir.empty()) return;
    int error = 0;
    for (size_t slash = 1; slash != std::string::npos;) {
        slash = dir.find('/', slash + 1);
        if (mkdir(dir.substr(0, slash).c_str(), 0755) != 0 && errno != EEXIST) error = errno;
    }
    if (!IsDirectory(dir)) {
        Fail("cannot make the screenshot directory " + dir + ": " +
             std::strerror(error != 0 ? error : ENOTDIR));
    }
    RemoveEarlierShots(dir);
}

// The session's files go on every way out that leaves this process running: its own
// end, a failure after the session was made, and the end of a program killed by a
// signal or stopped by the simulator.
VantorSim::SessionDirectory session;
VantorSim::TerminalKeys terminal;

void CleanUp() {
    terminal.Stop();
    session.Remove();
}

// Keys typed on the terminal go straight into the session's keypad, so a program gets
// them whenever it waits, however long its wait.
void ReadTerminal(pid_t group) {
    const int code = terminal.Poll(100);
    if (code == VantorSim::TerminalKeys::kQuit) {
        VantorSim::SessionState(session.StatePath()).Update([](auto& fields) {
            fields.ending = VantorSim::SessionState::QuitFromTerminal;
        });
        std::fputs("vantor-sim: quit from the terminal\n", stderr);
        kill(-group, SIGTERM);
    } else if (code > 0) {
        session.QueueKey(code);
    }
}

int ExitStatus(int status, const char* program) {
    const VantorSim::SessionState::Fields state =
        VantorSim::SessionState(session.StatePath()).Read();
    if (state.ending == VantorSim::SessionState::ScriptUsedUp) return 3;
    if (state.ending == VantorSim::SessionState::QuitFromTerminal) return 0;
    if (const int signal = VantorSim::Supervisor::Received()) return 128 + signal;
    if (WIFSIGNALED(status)) {
        std::fprintf(stderr, "vantor-sim: %s ended by signal %d\n", program, WTERMSIG(status));
        return 128 + WTERMSIG(status);
    }
    return WEXITSTATUS(status);
}

void ReportShots(const Options& options) {
    if (options.shots.empty()) return;
    const int frames = VantorSim::SessionState(session.StatePath()).Read().frames;
    std::fprintf(stderr, "vantor-sim: %d screenshot%s in %s\n", frames, frames == 1 ? "" : "s",
                 options.shots.c_str());
}

}  // namespace

int main(int argc, char** argv) {
    Options options = Parse(argc, argv);
    if (!options.keysGiven && !isatty(STDIN_FILENO))
        Fail("no keys: give --keys or --key-file, or run in a terminal");
    MakeShotDirectory(options.shots);
    // Absolute, since a script's commands may each run in another directory.
    if (!options.shots.empty()) options.shots = Canonical(options.shots);
    VantorSim::Supervisor::CatchSignals();  // before there is anything to clean up
    if (!session.Create(options.keypadName.empty() ? VantorSim::SessionDirectory::kKeypadName
                                                   : options.keypadName))
        Fail(std::string("cannot make a session directory: ") + std::strerror(errno));
    std::atexit(CleanUp);
    environment = Prepare(options, session.Path());
    if (options.keyCodes == "common") terminal.SendKeyboardCodes();
    if (!options.keysGiven) terminal.Start();

    VantorSim::Supervisor supervisor;
    if (supervisor.Start(options.program.data(), options.keysGiven, ExportEnvironment) < 0) {
        if (const int signal = VantorSim::Supervisor::Received()) return 128 + signal;
        Fail(std::string("cannot start the program: ") + std::strerror(errno));
    }
    const int status =
        ExitStatus(supervisor.Wait(options.keysGiven ? nullptr : ReadTerminal), options.program[0]);
    ReportShots(options);
    return status;
}
