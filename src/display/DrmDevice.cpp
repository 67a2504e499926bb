// SPDX-License-Identifier: MIT
#include "DrmDevice.h"

#include <errno.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <utility>

namespace Vantor {

namespace {

const char* const kClassName = "CFramebuffer";

struct SBufferFormat {
    uint32_t bitsPerPixel;
    uint32_t depth;
};

const SBufferFormat kXrgb8888 = {32, 24};
const SBufferFormat kRgb565 = {16, 16};

// The kernel fills the name field but need not end it.
std::string ModeName(const drm_mode_modeinfo& mode) {
    return std::string(mode.name, strnlen(mode.name, sizeof(mode.name)));
}

}  // namespace

CDrmDevice::CDrmDevice(UniqueFd descriptor, const std::string& driverName)
    : card(descriptor.Get()), driver(driverName) {
    device = std::move(descriptor);
}

bool CDrmDevice::Start(const char* path) {
    std::string problem, found;
    if (card.Capability(DRM_CAP_DUMB_BUFFER) == 0) return Refuse(path, "no dumb buffers");
    if (!output.Choose(card, problem, found)) return Refuse(path, problem, found);
    return CreateBuffer(path) && Map(path) && SetMode(path);
}

CDrmDevice::~CDrmDevice() {
    if (modeSet) RestoreCrtc();
    if (memory != nullptr) munmap(memory, memoryBytes);
    if (framebufferId != 0) card.Request(DRM_IOCTL_MODE_RMFB, &framebufferId);
    if (handle != 0) {
        drm_mode_destroy_dumb destroy;
        std::memset(&destroy, 0, sizeof(destroy));
        destroy.handle = handle;
        card.Request(DRM_IOCTL_MODE_DESTROY_DUMB, &destroy);
    }
}

// One line: what is wrong, where, and what was found there.
bool CDrmDevice::Refuse(const char* path, const std::string& what, const std::string& found) const {
    printf("%s: %s on %s (driver %s)%s%s\n", kClassName, what.c_str(), path, driver.c_str(),
           found.empty() ? "" : ": ", found.c_str());
    return false;
}

// XRGB8888 where the card takes it; RGB565 where 16 bits is all it scans out (it says
// so by its preferred depth, or by refusing the 32-bit framebuffer).
bool CDrmDevice::CreateBuffer(const char* path) {
    const bool prefers16 = card.Capability(DRM_CAP_DUMB_PREFERRED_DEPTH) == 16;
    const SBufferFormat order[] = {prefers16 ? kRgb565 : kXrgb8888,
                                   prefers16 ? kXrgb8888 : kRgb565};
    const drm_mode_modeinfo& mode = output.mode;
    if (mode.hdisplay == 0 || mode.vdisplay == 0)
        return Refuse(path, "an empty mode on " + output.name);
    int error = 0;
    for (const SBufferFormat& format : order) {
        if (TryBuffer(format.bitsPerPixel, format.depth)) return true;
        error = errno;
    }
    return Refuse(path, "cannot make a " + std::to_string(mode.hdisplay) + "x" +
                            std::to_string(mode.vdisplay) + " buffer for " + output.name + ": " +
                            std::strerror(error));
}

bool CDrmDevice::TryBuffer(uint32_t bits, uint32_t depth) {
    drm_mode_create_dumb create;
    std::memset(&create, 0, sizeof(create));
    create.width = output.mode.hdisplay;
    create.height = output.mode.vdisplay;
    create.bpp = bits;
    if (int error = card.Request(DRM_IOCTL_MODE_CREATE_DUMB, &create)) {
        errno = error;
        return false;
    }
    drm_mode_fb_cmd add;
    std::memset(&add, 0, sizeof(add));
    add.width = create.width;
    add.height = create.height;
    add.pitch = create.pitch;
    add.bpp = bits;
    add.depth = depth;
    add.handle = create.handle;
    const int error = card.Request(DRM_IOCTL_MODE_ADDFB, &add);
    if (error != 0 || create.pitch < create.width * ((bits + 7) / 8) ||
        create.size < uint64_t(create.pitch) * create.height || create.size > SIZE_MAX) {
        if (error == 0) card.Request(DRM_IOCTL_MODE_RMFB, &add.fb_id);
        drm_mode_destroy_dumb destroy;
        std::memset(&destroy, 0, sizeof(destroy));
        destroy.handle = create.handle;
        card.Request(DRM_IOCTL_MODE_DESTROY_DUMB, &destroy);
        errno = error != 0 ? error : EINVAL;
        return false;
    }
    handle = create.handle;
    framebufferId = add.fb_id;
    bitsPerPixel = bits;
    pitch = create.pitch;
    bufferBytes = create.size;
    return true;
}

bool CDrmDevice::Map(const char* path) {
    drm_mode_map_dumb request;
    std::memset(&request, 0, sizeof(request));
    request.handle = handle;
    void* mapped = MAP_FAILED;
    if (card.Request(DRM_IOCTL_MODE_MAP_DUMB, &request) == 0)
        mapped = mmap(nullptr, size_t(bufferBytes), PROT_READ | PROT_WRITE, MAP_SHARED,
                      device.Get(), off_t(request.offset));
    fb_var_screeninfo var;
    DescribeLayout(var);
    if (mapped == MAP_FAILED || !CPixelFormat::FromDevice(var, format)) {
        if (mapped != MAP_FAILED) munmap(mapped, size_t(bufferBytes));
        printf("%s: cannot map frame buffer %s to memory\n", kClassName, path);
        return false;
    }
    memory = mapped;
    memoryBytes = size_t(bufferBytes);
    start = static_cast<uint8_t*>(mapped);
    width = output.mode.hdisplay;
    height = output.mode.vdisplay;
    stride = pitch;
    return true;
}

// Only the DRM master may set a mode: a compositor or another of our programs that
// holds the card makes the kernel refuse with EACCES (or EBUSY on some drivers).
bool CDrmDevice::SetMode(const char* path) {
    haveSaved = card.Crtc(output.crtc, saved);
    drm_mode_crtc crtc;
    std::memset(&crtc, 0, sizeof(crtc));
    uint32_t connector = output.connector;
    crtc.crtc_id = output.crtc;
    crtc.fb_id = framebufferId;
    crtc.set_connectors_ptr = uint64_t(reinterpret_cast<uintptr_t>(&connector));
    crtc.count_connectors = 1;
    crtc.mode = output.mode;
    crtc.mode_valid = 1;
    const int error = card.Request(DRM_IOCTL_MODE_SETCRTC, &crtc);
    if (error == EACCES || error == EBUSY) return Refuse(path, "another program owns the display");
    if (error != 0)
        return Refuse(path, "cannot show " + ModeName(output.mode) + " on " + output.name + ": " +
                                std::strerror(error));
    modeSet = true;
    return true;
}

// The CRTC gets back its old framebuffer and mode on our connector; one that was off is
// switched off again rather than left showing a buffer about to be removed.
void CDrmDevice::RestoreCrtc() {
    drm_mode_crtc crtc;
    std::memset(&crtc, 0, sizeof(crtc));
    uint32_t connector = output.connector;
    crtc.crtc_id = output.crtc;
    if (haveSaved && saved.mode_valid != 0 && saved.fb_id != 0) {
        crtc.fb_id = saved.fb_id;
        crtc.x = saved.x;
        crtc.y = saved.y;
        crtc.mode = saved.mode;
        crtc.mode_valid = 1;
        crtc.set_connectors_ptr = uint64_t(reinterpret_cast<uintptr_t>(&connector));
        crtc.count_connectors = 1;
    }
    card.Request(DRM_IOCTL_MODE_SETCRTC, &crtc);
}

void CDrmDevice::DescribeLayout(fb_var_screeninfo& var) const {
    std::memset(&var, 0, sizeof(var));
    var.bits_per_pixel = bitsPerPixel;
    if (bitsPerPixel == 16) {
        var.red = {11, 5, 0};
        var.green = {5, 6, 0};
        var.blue = {0, 5, 0};
    } else {
        var.red = {16, 8, 0};
        var.green = {8, 8, 0};
        var.blue = {0, 8, 0};
    }
}

// What an fbdev driver would report for this mode and buffer, timings included, so a
// host that reads varInfo or fixInfo sees the real screen.
void CDrmDevice::Describe(fb_var_screeninfo& var, fb_fix_screeninfo& fix) const {
    const drm_mode_modeinfo& mode = output.mode;
    DescribeLayout(var);
    var.xres = var.xres_virtual = mode.hdisplay;
    var.yres = var.yres_virtual = mode.vdisplay;
    var.width = output.widthMm;
    var.height = output.heightMm;
    var.pixclock = mode.clock != 0 ? 1000000000u / mode.clock : 0;  // kHz to picoseconds
    var.left_margin = mode.htotal - mode.hsync_end;
    var.right_margin = mode.hsync_start - mode.hdisplay;
    var.hsync_len = mode.hsync_end - mode.hsync_start;
    var.upper_margin = mode.vtotal - mode.vsync_end;
    var.lower_margin = mode.vsync_start - mode.vdisplay;
    var.vsync_len = mode.vsync_end - mode.vsync_start;
    std::memset(&fix, 0, sizeof(fix));
    std::strncpy(fix.id, driver.c_str(), sizeof(fix.id) - 1);
    fix.smem_len = uint32_t(std::min<uint64_t>(bufferBytes, UINT32_MAX));
    fix.line_length = pitch;
    fix.type = FB_TYPE_PACKED_PIXELS;
    fix.visual = FB_VISUAL_TRUECOLOR;
}

// The rectangle is clipped to the page by the caller; the kernel takes 16-bit corners.
void CDrmDevice::Show(int x, int y, int w, int h) const {
    if (!dirtyAnswers || w <= 0 || h <= 0) return;
    drm_clip_rect clip;
    clip.x1 = uint16_t(x);
    clip.y1 = uint16_t(y);
    clip.x2 = uint16_t(x + w);
    clip.y2 = uint16_t(y + h);
    drm_mode_fb_dirty_cmd dirty;
    std::memset(&dirty, 0, sizeof(dirty));
    dirty.fb_id = framebufferId;
    dirty.num_clips = 1;
    dirty.clips_ptr = uint64_t(reinterpret_cast<uintptr_t>(&clip));
    if (card.Request(DRM_IOCTL_MODE_DIRTYFB, &dirty) == ENOSYS) dirtyAnswers = false;
}

}  // namespace Vantor
