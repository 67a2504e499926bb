// The layer's own C interface, for tests and the simulator.
#include <cctype>
#include <cstdlib>
#include <string>

#include "VirtualSystem.h"
#include "vantor_platform.h"

using VantorPlatform::FramebufferDevice;
using VantorPlatform::InputDevice;
using VantorPlatform::VirtualSystem;

#define VP_API extern "C" __attribute__((visibility("default")))

namespace {

VirtualSystem& System() {
    return VirtualSystem::Get();
}

FramebufferDevice* Device(const char* path) {
    return path ? System().Framebuffer(path) : nullptr;
}

}  // namespace

VP_API void vp_reset(void) {
    System().Reset();
}

VP_API int vp_fb_add(const char* path, const vp_screen* screen) {
    if (path == nullptr || screen == nullptr) return -1;
    return System().AddFramebuffer(path, *screen);
}

VP_API int vp_fb_fail(const char* path, int failures) {
    std::lock_guard<std::recursive_mutex> lock(System().mutex);
    FramebufferDevice* device = Device(path);
    if (device == nullptr) return -1;
    device->failures = failures;
    return 0;
}

VP_API uint32_t* vp_fb_pixels(const char* path) {
    std::lock_guard<std::recursive_mutex> lock(System().mutex);
    FramebufferDevice* device = Device(path);
    return device ? device->view : nullptr;
}

VP_API int vp_fb_open_count(const char* path) {
    std::lock_guard<std::recursive_mutex> lock(System().mutex);
    FramebufferDevice* device = Device(path);
    return device ? device->openCount : -1;
}

VP_API int vp_fb_unmap_count(const char* path) {
    std::lock_guard<std::recursive_mutex> lock(System().mutex);
    FramebufferDevice* device = Device(path);
    return device ? device->unmapCount : -1;
}

VP_API int vp_file_add(const char* path, const void* data, size_t size) {
    if (path == nullptr || (data == nullptr && size > 0)) return -1;
    return System().AddFile(path, data, size);
}

VP_API int vp_file_remove(const char* path) {
    return path ? System().RemoveFile(path) : -1;
}

VP_API int vp_dir_map(const char* virtual_dir, const char* host_dir) {
    if (virtual_dir == nullptr || host_dir == nullptr || virtual_dir[0] != '/') return -1;
    return System().MapDirectory(virtual_dir, host_dir);
}

VP_API int vp_input_add(int index, const char* name) {
    return System().AddInput(index, name);
}

VP_API int vp_input_remove(int index) {
    return System().RemoveInput(index);
}

VP_API int vp_input_event(int index, int type, int code, int value) {
    return System().QueueEvent(index, type, code, value);
}

VP_API int vp_input_press(int index, int code) {
    if (vp_input_event(index, 1, code, 1) != 0) return -1;
    return vp_input_event(index, 1, code, 0);
}

VP_API int vp_input_open_count(int index) {
    std::lock_guard<std::recursive_mutex> lock(System().mutex);
    InputDevice* device = System().Input(index);
    return device ? device->openCount : -1;
}

VP_API void vp_set_wait_hook(vp_wait_hook hook, void* user) {
    std::lock_guard<std::recursive_mutex> lock(System().mutex);
    System().waitHook = hook;
    System().waitUser = user;
}

VP_API int vp_input_script(int index, const char* codes) {
    std::lock_guard<std::recursive_mutex> lock(System().mutex);
    InputDevice* device = System().Input(index);
    if (device == nullptr || codes == nullptr) return -1;
    device->script.clear();
    for (const char* p = codes; *p != '\0';) {
        if (std::isspace(static_cast<unsigned char>(*p)) || *p == ',') {
            ++p;
            continue;
        }
        char* end = nullptr;
        const long code = std::strtol(p, &end, 10);
        if (end == p || code < 0 || code > 0xFFFF) return -1;
        device->script.push_back(static_cast<int>(code));
        p = end;
    }
    device->scripted = true;
    return 0;
}

VP_API void vp_set_exit_when_exhausted(int enabled) {
    std::lock_guard<std::recursive_mutex> lock(System().mutex);
    System().exitWhenExhausted = enabled != 0;
}

VP_API int vp_input_script_left(int index) {
    std::lock_guard<std::recursive_mutex> lock(System().mutex);
    InputDevice* device = System().Input(index);
    return device ? static_cast<int>(device->script.size()) : -1;
}
