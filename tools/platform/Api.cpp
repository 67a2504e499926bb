// SPDX-License-Identifier: MIT
// The layer's own C interface, for tests and the simulator: argument checks here, the
// work in VirtualSystem.
#include "FaultPlan.h"
#include "VirtualSystem.h"
#include "vantor_platform.h"

using VantorPlatform::FramebufferDevice;
using VantorPlatform::VirtualSystem;

#define VP_API extern "C" __attribute__((visibility("default")))

namespace {

VirtualSystem& System() {
    return VirtualSystem::Get();
}

bool IsAbsolute(const char* path) {
    return path != nullptr && path[0] == '/';
}

}  // namespace

VP_API void vp_reset(void) {
    System().Reset();
    VantorPlatform::FaultPlan::Clear();
}

VP_API int vp_fail_call(const char* call, int error, int nth) {
    const int known = VantorPlatform::FaultPlan::CallFromName(call);
    if (known < 0 || error <= 0 || nth < 1) return -1;
    VantorPlatform::FaultPlan::Fail(known, error, nth);
    return 0;
}

VP_API int vp_short_call(const char* call, int nth) {
    const int known = VantorPlatform::FaultPlan::CallFromName(call);
    if ((known != VantorPlatform::FaultPlan::kRead && known != VantorPlatform::FaultPlan::kWrite) ||
        nth < 1) {
        return -1;
    }
    VantorPlatform::FaultPlan::Shorten(known, nth);
    return 0;
}

VP_API int vp_attach(const char* dir) {
    return IsAbsolute(dir) ? System().Attach(dir) : -1;
}

VP_API int vp_fb_add(const char* path, const vp_screen* screen) {
    if (!IsAbsolute(path) || screen == nullptr) return -1;
    return System().AddFramebuffer(path, *screen);
}

VP_API int vp_fb_fail(const char* path, int failures) {
    return path ? System().SetFailures(path, failures) : -1;
}

VP_API uint32_t* vp_fb_pixels(const char* path) {
    return path ? System().Pixels(path) : nullptr;
}

VP_API int vp_fb_open_count(const char* path) {
    return path ? System().Count(path, &FramebufferDevice::openCount) : -1;
}

VP_API int vp_fb_close_count(const char* path) {
    return path ? System().Count(path, &FramebufferDevice::closeCount) : -1;
}

VP_API int vp_fb_unmap_count(const char* path) {
    return path ? System().Count(path, &FramebufferDevice::unmapCount) : -1;
}

VP_API int vp_fb_pan_count(const char* path) {
    return path ? System().Count(path, &FramebufferDevice::panCount) : -1;
}

VP_API int vp_drm_add(const char* path, const vp_drm_card* card) {
    if (!IsAbsolute(path) || card == nullptr) return -1;
    return System().AddCard(path, *card);
}

VP_API int vp_drm_connect(const char* path, int connected) {
    return path ? System().ConnectCard(path, connected != 0) : -1;
}

VP_API int vp_drm_master_elsewhere(const char* path, int held) {
    return path ? System().SetMasterElsewhere(path, held != 0) : -1;
}

VP_API uint32_t* vp_drm_pixels(const char* path) {
    return path ? System().CardPixels(path) : nullptr;
}

VP_API int vp_drm_read_state(const char* path, vp_drm_state* state) {
    return path && state ? System().CardState(path, *state) : -1;
}

VP_API int vp_file_add(const char* path, const void* data, size_t size) {
    if (!IsAbsolute(path) || (data == nullptr && size > 0)) return -1;
    return System().AddFile(path, data, size);
}

VP_API int vp_file_remove(const char* path) {
    return IsAbsolute(path) ? System().RemoveFile(path) : -1;
}

VP_API int vp_dir_map(const char* virtual_dir, const char* host_dir) {
    if (!IsAbsolute(virtual_dir) || host_dir == nullptr || host_dir[0] == '\0') return -1;
    return System().MapDirectory(virtual_dir, host_dir);
}

VP_API int vp_vt_add(int mode) {
    if (mode != 0 && mode != 1) return -1;
    const char digit = char('0' + mode);
    return System().AddFile(VantorPlatform::VirtualConsole::kPath, &digit, 1);
}

VP_API int vp_vt_mode(void) {
    return System().ConsoleMode();
}

VP_API int vp_input_add(int index, const char* name) {
    return System().AddInput(index, index, name);
}

VP_API int vp_input_add_numbered(int index, int event, const char* name) {
    return event >= 0 ? System().AddInput(index, event, name) : -1;
}

VP_API int vp_input_add_name(int index, const char* name) {
    return name ? System().AddInput(index, -1, name) : -1;
}

VP_API int vp_input_remove(int index) {
    return System().RemoveInput(index);
}

VP_API int vp_input_event(int index, int type, int code, int value) {
    return System().QueueEvent(index, type, code, value);
}

VP_API int vp_input_key(int index, int code, int value) {
    return System().QueueKey(index, code, value);
}

VP_API int vp_input_press(int index, int code) {
    return System().QueuePress(index, code);
}

VP_API int vp_input_open_count(int index) {
    return System().InputOpenCount(index);
}

VP_API void vp_set_wait_hook(vp_wait_hook hook, void* user) {
    System().SetWaitHook(hook, user);
}

VP_API int vp_input_script(int index, const char* codes) {
    return System().SetScript(index, codes);
}

VP_API int vp_input_script_left(int index) {
    return System().ScriptLeft(index);
}

VP_API void vp_set_exit_when_exhausted(int enabled) {
    System().SetExitWhenExhausted(enabled != 0);
}
