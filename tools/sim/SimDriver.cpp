// The part of the simulator that lives inside the program: preloaded after the platform
// layer, it sets up the virtual screen, keypad and fonts from the environment that
// vantor-sim prepared, feeds the key script, and takes the screenshots.
#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <string>
#include <thread>

#include "KeyScript.h"
#include "Panel.h"
#include "PngWriter.h"
#include "TerminalKeys.h"
#include "vantor_platform.h"

namespace VantorSim {

namespace {

const int kKeypad = 0;

class Session {
  public:
    void Start();
    void OnWait();
    void Shot();
    void Finish();
    bool shotOnUpdate = false;

  private:
    bool NextStep();
    [[noreturn]] void Stop(const char* why, int status);

    std::string device = "/dev/fb0";
    int width = 800, height = 480, scale = 1;
    std::string shots;
    std::deque<KeyStep> script;
    bool fromTerminal = false;
    TerminalKeys terminal;
    int shotCount = 0;
    unsigned long long lastShot = 0;
};

Session* session = nullptr;

std::string Env(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

unsigned long long Fingerprint(const uint32_t* pixels, size_t count) {
    unsigned long long hash = 1469598103934665603ull;
    for (size_t i = 0; i < count; ++i) hash = (hash ^ pixels[i]) * 1099511628211ull;
    return hash;
}

void Fail(const std::string& message) {
    std::fprintf(stderr, "vantor-sim: %s\n", message.c_str());
    _exit(2);
}

void Start() {
    session = new Session();
    session->Start();
}

}  // namespace

void Session::Start() {
    if (std::sscanf(Env("VANTOR_SIM_SCREEN").c_str(), "%dx%d", &width, &height) != 2) {
        Fail("bad screen size in VANTOR_SIM_SCREEN");
    }
    if (!Env("VANTOR_SIM_FB").empty()) device = Env("VANTOR_SIM_FB");
    scale = std::max(1, std::atoi(Env("VANTOR_SIM_SCALE").c_str()));
    shots = Env("VANTOR_SIM_SHOTS");
    shotOnUpdate = !Env("VANTOR_SIM_SHOT_ON_UPDATE").empty();
    for (const KeyStep& step : DecodeKeyScript(Env("VANTOR_SIM_KEYS"))) script.push_back(step);
    fromTerminal = !Env("VANTOR_SIM_TERMINAL").empty() && terminal.Start();

    Panel panel;
    if (!Env("VANTOR_SIM_PANEL").empty() && !Panel::Decode(Env("VANTOR_SIM_PANEL"), panel))
        Fail("bad panel in VANTOR_SIM_PANEL");
    const vp_screen screen = panel.Screen(width, height);
    if (vp_fb_add(device.c_str(), &screen) != 0) Fail("cannot make the screen " + device);
    if (vp_dir_map("/usr/share/fonts/vantor", Env("VANTOR_SIM_FONTS").c_str()) != 0) {
        Fail("cannot use the fonts in " + Env("VANTOR_SIM_FONTS"));
    }
    if (vp_input_add(kKeypad, "tca8418 keypad (vantor-sim)") != 0) Fail("cannot make the keypad");
    vp_set_wait_hook([](int, void*) { session->OnWait(); }, nullptr);
    std::atexit([] { session->Finish(); });
}

// A new picture only when the screen changed since the last one: a program that polls
// its keys would otherwise leave hundreds of identical files.
void Session::Shot() {
    if (shots.empty()) return;
    // What the panel shows: the visible page, read by the device's own layout.
    const std::vector<uint32_t> page =
        ReadVisiblePage(device, reinterpret_cast<const uint8_t*>(vp_fb_pixels(device.c_str())));
    if (page.size() != size_t(width) * height) return;
    const uint32_t* pixels = page.data();
    const unsigned long long print = Fingerprint(pixels, page.size());
    if (shotCount > 0 && print == lastShot) return;
    char name[32];
    std::snprintf(name, sizeof(name), "/%04d.png", ++shotCount);
    if (!WritePng(shots + name, pixels, width, height, width, scale)) {
        std::fprintf(stderr, "vantor-sim: cannot write %s%s\n", shots.c_str(), name);
    }
    lastShot = print;
}

void Session::OnWait() {
    Shot();
    if (NextStep()) return;
    if (fromTerminal) {
        const int code = terminal.Poll(50);
        if (code == TerminalKeys::kQuit) Stop("quit from the terminal", 0);
        if (code > 0) vp_input_event(kKeypad, 1, code, 1);
        return;
    }
    Stop("the key script is used up while the program waits for a key; stopping it", 3);
}

// Plays the script up to the next key or "none"; false when nothing is left.
bool Session::NextStep() {
    while (!script.empty()) {
        const KeyStep step = script.front();
        script.pop_front();
        if (step.kind == KeyStep::Pause) {
            std::this_thread::sleep_for(std::chrono::duration<double>(step.seconds));
            continue;
        }
        if (step.kind == KeyStep::Press) vp_input_event(kKeypad, 1, step.code, 1);
        return true;
    }
    return false;
}

void Session::Stop(const char* why, int status) {
    std::fprintf(stderr, "vantor-sim: %s\n", why);
    Finish();
    _exit(status);
}

void Session::Finish() {
    static bool finished = false;
    if (finished) return;
    finished = true;
    Shot();
    terminal.Stop();
    if (!shots.empty())
        std::fprintf(stderr, "vantor-sim: %d screenshots in %s\n", shotCount, shots.c_str());
}

}  // namespace VantorSim

// Only the program vantor-sim started is simulated; programs it starts in turn run on
// the real system, so the preload is taken out of the environment they inherit.
__attribute__((constructor)) static void StartSimulation() {
    const std::string parent = VantorSim::Env("VANTOR_SIM_PARENT");
    unsetenv("LD_PRELOAD");
    if (parent.empty() || std::to_string(getppid()) != parent) return;
    if (dlopen("libvantor.so.1", RTLD_LAZY | RTLD_NOLOAD) == nullptr) {
        VantorSim::Fail(
            "the program is not linked against libvantor (libvantor.so.1); "
            "the simulator can only run programs that use the library");
    }
    VantorSim::Start();
}

// Update as the program calls it, so a screenshot can follow every push of the canvas.
extern "C" __attribute__((visibility("default"))) int Update(void) {
    using Call = int (*)(void);
    static Call real = reinterpret_cast<Call>(dlsym(RTLD_NEXT, "Update"));
    const int result = real ? real() : -2;
    if (VantorSim::session != nullptr && VantorSim::session->shotOnUpdate)
        VantorSim::session->Shot();
    return result;
}
