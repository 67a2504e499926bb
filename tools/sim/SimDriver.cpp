// SPDX-License-Identifier: MIT
// The part of the simulator that lives inside each process it runs: preloaded after the
// platform layer, it attaches the process to the session's screen and keypad, plays
// the shared key script at each wait for a key, and records the screen.
#include <dlfcn.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "KeyScript.h"
#include "LiveView.h"
#include "Panel.h"
#include "PngWriter.h"
#include "SessionDirectory.h"
#include "SessionState.h"
#include "vantor_platform.h"

namespace VantorSim {

namespace {

const char kDrmCard[] = "/dev/dri/card0";
const int kConnectorEdp = 14;  // a built-in panel, as DRM numbers connector types

std::string Env(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

unsigned long long Fingerprint(const uint32_t* pixels, size_t count) {
    unsigned long long hash = 1469598103934665603ull;
    for (size_t i = 0; i < count; ++i) hash = (hash ^ pixels[i]) * 1099511628211ull;
    return hash;
}

// What the virtual DRM card's first CRTC shows, when it shows one of our buffers
// (XRGB8888 rows of the card's pitch); empty while the console shows.
std::vector<uint32_t> ReadDrmPage(const std::string& card, int width, int height) {
    vp_drm_state state;
    const uint8_t* memory = reinterpret_cast<const uint8_t*>(vp_drm_pixels(card.c_str()));
    if (memory == nullptr || vp_drm_read_state(card.c_str(), &state) != 0 ||
        state.bits_per_pixel != 32 || state.width != width || state.height != height)
        return {};
    std::vector<uint32_t> page(size_t(width) * height);
    for (int y = 0; y < height; ++y) {
        const uint32_t* row = reinterpret_cast<const uint32_t*>(memory + size_t(y) * state.pitch);
        for (int x = 0; x < width; ++x) page[size_t(y) * width + x] = row[x] & 0xFFFFFF;
    }
    return page;
}

void Fail(const std::string& message) {
    std::fprintf(stderr, "vantor-sim: %s\n", message.c_str());
    _exit(2);
}

}  // namespace

class Session {
  public:
    explicit Session(const std::string& dir) : state(dir + "/state"), view(STDERR_FILENO) {}
    void Start(const std::string& dir);
    void OnWait();
    void Record();
    void Finish();
    bool shotOnUpdate = false;

  private:
    bool NextStep();
    [[noreturn]] void End(SessionState::Ending why, const char* message, int status);

    SessionState state;
    LiveView view;
    std::string device = "/dev/fb0";
    bool drm = false;
    int width = 800, height = 480, scale = 1;
    std::string shots;
    std::vector<KeyStep> script;
    bool fromTerminal = false, liveView = false;
};

Session* session = nullptr;

void Session::Start(const std::string& dir) {
    if (std::sscanf(Env("VANTOR_SIM_SCREEN").c_str(), "%dx%d", &width, &height) != 2) {
        Fail("bad screen size in VANTOR_SIM_SCREEN");
    }
    if (!Env("VANTOR_SIM_FB").empty()) device = Env("VANTOR_SIM_FB");
    drm = !Env("VANTOR_SIM_DRM").empty();
    if (drm) device = kDrmCard;
    scale = std::max(1, std::atoi(Env("VANTOR_SIM_SCALE").c_str()));
    shots = Env("VANTOR_SIM_SHOTS");
    shotOnUpdate = !Env("VANTOR_SIM_SHOT_ON_UPDATE").empty();
    script = DecodeKeyScript(Env("VANTOR_SIM_KEYS"));
    fromTerminal = !Env("VANTOR_SIM_TERMINAL").empty();
    liveView = !Env("VANTOR_SIM_VIEW").empty();

    if (vp_attach(dir.c_str()) != 0) Fail("the session directory " + dir + " is gone");
    Panel panel;
    if (!Env("VANTOR_SIM_PANEL").empty() && !Panel::Decode(Env("VANTOR_SIM_PANEL"), panel))
        Fail("bad panel in VANTOR_SIM_PANEL");
    const vp_screen screen = panel.Screen(width, height);
    // A DRM card alone, with no framebuffer device beside it, as on boards without fbdev.
    const vp_drm_card card = {width, height, kConnectorEdp, 0};
    if (drm ? vp_drm_add(device.c_str(), &card) != 0 : vp_fb_add(device.c_str(), &screen) != 0)
        Fail("cannot make the screen " + device);
    if (vp_dir_map("/usr/share/fonts/vantor", Env("VANTOR_SIM_FONTS").c_str()) != 0) {
        Fail("cannot use the fonts in " + Env("VANTOR_SIM_FONTS"));
    }
    // The node alone: the session already holds its name file.
    if (vp_input_add(SessionDirectory::kKeypad, nullptr) != 0) Fail("cannot reach the keypad");
    vp_set_wait_hook([](int, void*) { session->OnWait(); }, nullptr);
    std::atexit([] { session->Finish(); });
}

// A new picture only when the screen changed since the last one, whichever process
// drew it: a program that polls its keys would otherwise leave hundreds of equal files.
void Session::Record() {
    if (shots.empty() && !liveView) return;
    // What the panel shows: the visible page, read by the device's own layout.
    const std::vector<uint32_t> page =
        drm ? ReadDrmPage(device, width, height)
            : ReadVisiblePage(device,
                              reinterpret_cast<const uint8_t*>(vp_fb_pixels(device.c_str())));
    if (page.size() != size_t(width) * height) return;
    const uint32_t* pixels = page.data();
    const unsigned long long print = Fingerprint(pixels, page.size());
    // The screen starts black: a file of it would show nothing a program drew, so until
    // something is drawn the terminal alone shows it, once.
    const bool blank = std::all_of(page.begin(), page.end(), [](uint32_t p) { return p == 0; });
    state.Update([&](SessionState::Fields& fields) {
        if (print == fields.lastPrint && (fields.frames > 0 || blank)) return;
        fields.lastPrint = print;
        if (blank && fields.frames == 0) {
            if (liveView) view.Show("vantor-sim: blank screen", pixels, width, height, width);
            return;
        }
        ++fields.frames;
        char name[32];
        std::snprintf(name, sizeof(name), "/%04d.png", fields.frames);
        if (liveView) {
            const std::string file = shots.empty() ? "" : " (" + shots + name + ")";
            view.Show("vantor-sim: screen " + std::to_string(fields.frames) + file, pixels, width,
                      height, width);
        }
        if (shots.empty()) return;
        errno = 0;
        if (!WritePng(shots + name, pixels, width, height, width, scale)) {
            std::fprintf(stderr, "vantor-sim: cannot write %s%s: %s\n", shots.c_str(), name,
                         errno != 0 ? std::strerror(errno) : "the PNG encoder failed");
        }
    });
}

void Session::OnWait() {
    Record();
    if (NextStep()) return;
    if (fromTerminal) return;  // vantor-sim queues the keys as they are typed
    End(SessionState::ScriptUsedUp,
        "the key script is used up while the program waits for a key; stopping it", 3);
}

// Plays the script up to the next key or "none"; false when nothing is left. The
// position is the session's, so processes that follow each other share one script.
bool Session::NextStep() {
    for (;;) {
        KeyStep step = {KeyStep::Skip, 0, 0};
        bool found = false;
        state.Update([&](SessionState::Fields& fields) {
            if (fields.nextStep >= int(script.size())) return;
            step = script[size_t(fields.nextStep++)];
            found = true;
            // Queued under the lock, so two waiting processes get their keys in order;
            // as the driver sends a press: scan code, key record, sync.
            if (step.kind == KeyStep::Press) vp_input_key(SessionDirectory::kKeypad, step.code, 1);
        });
        if (!found) return false;
        if (step.kind != KeyStep::Pause) return true;
        std::this_thread::sleep_for(std::chrono::duration<double>(step.seconds));
    }
}

// Ends the whole session, not only this process: a shell script would otherwise go on
// to its next command, which would find the script used up in turn.
void Session::End(SessionState::Ending why, const char* message, int status) {
    state.Update([&](SessionState::Fields& fields) { fields.ending = why; });
    std::fprintf(stderr, "vantor-sim: %s\n", message);
    Finish();
    sigset_t term;
    sigemptyset(&term);
    sigaddset(&term, SIGTERM);
    sigprocmask(SIG_BLOCK, &term, nullptr);
    kill(-getpgrp(), SIGTERM);
    _exit(status);
}

// Only a process that used the library has a screen worth a last look.
void Session::Finish() {
    static bool finished = false;
    if (finished) return;
    finished = true;
    if (dlopen("libvantor.so.1", RTLD_LAZY | RTLD_NOLOAD) != nullptr) Record();
}

}  // namespace VantorSim

// Every process vantor-sim starts, and every process those start, joins the session:
// a shell script's commands share one screen, one keypad and one key script.
__attribute__((constructor)) static void StartSimulation() {
    const std::string dir = VantorSim::Env("VANTOR_SIM_SESSION");
    if (dir.empty()) return;
    VantorSim::session = new VantorSim::Session(dir);
    VantorSim::session->Start(dir);
}

namespace {

template <typename Call>
Call Real(const char* name) {
    return reinterpret_cast<Call>(dlsym(RTLD_NEXT, name));
}

// Each of the calls below pushes pixels to the screen; a picture can follow each one.
int Recorded(int result) {
    if (VantorSim::session != nullptr && VantorSim::session->shotOnUpdate)
        VantorSim::session->Record();
    return result;
}

using Plain = int (*)();
using Progress = int (*)(const char*, int, float);

}  // namespace

#define VANTOR_SIM_EXPORT extern "C" __attribute__((visibility("default")))

VANTOR_SIM_EXPORT int Update(void) {
    static const Plain real = Real<Plain>("Update");
    return Recorded(real ? real() : -2);
}

VANTOR_SIM_EXPORT int ShowProgress(const char* text, int align, float percent) {
    static const Progress real = Real<Progress>("ShowProgress");
    return Recorded(real ? real(text, align, percent) : -2);
}

VANTOR_SIM_EXPORT int UpdateProgress(const char* text, int align, float percent) {
    static const Progress real = Real<Progress>("UpdateProgress");
    return Recorded(real ? real(text, align, percent) : -2);
}

VANTOR_SIM_EXPORT int HideProgress(void) {
    static const Plain real = Real<Plain>("HideProgress");
    return Recorded(real ? real() : -2);
}
