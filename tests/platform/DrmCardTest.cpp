// SPDX-License-Identifier: MIT
// The virtual DRM card answers where the library's DRM tests rely on it answering as
// the kernel does: who may set a mode, what removing a shown framebuffer does, that a
// new buffer is black, and that fbdev requests are not understood.
#include <drm.h>
#include <drm_mode.h>
#include <errno.h>
#include <fcntl.h>
#include <linux/fb.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>

#include "PlatformTest.h"

namespace {

const char kCard[] = "/dev/dri/card0";

// A 64x32 XRGB8888 buffer and its framebuffer on descriptor fd.
uint32_t AddBuffer(int fd, drm_mode_create_dumb& create) {
    create = {};
    create.width = 64;
    create.height = 32;
    create.bpp = 32;
    EXPECT_EQ(0, ioctl(fd, DRM_IOCTL_MODE_CREATE_DUMB, &create));
    drm_mode_fb_cmd add = {};
    add.width = 64;
    add.height = 32;
    add.pitch = create.pitch;
    add.bpp = 32;
    add.depth = 24;
    add.handle = create.handle;
    EXPECT_EQ(0, ioctl(fd, DRM_IOCTL_MODE_ADDFB, &add));
    return add.fb_id;
}

int SetCrtc(int fd, uint32_t framebuffer) {
    uint32_t connector = 30;
    drm_mode_crtc crtc = {};
    crtc.crtc_id = 50;
    crtc.fb_id = framebuffer;
    crtc.set_connectors_ptr = uint64_t(uintptr_t(&connector));
    crtc.count_connectors = 1;
    crtc.mode_valid = 1;
    crtc.mode.hdisplay = 64;
    crtc.mode.vdisplay = 32;
    return ioctl(fd, DRM_IOCTL_MODE_SETCRTC, &crtc) == 0 ? 0 : errno;
}

}  // namespace

TEST_F(Platform, DrmCardAnswersAsTheKernelDoes) {
    const vp_drm_card card = {64, 32, DRM_MODE_CONNECTOR_eDP, 0};
    ASSERT_EQ(0, vp_drm_add(kCard, &card));
    const int master = open(kCard, O_RDWR), other = open(kCard, O_RDWR);
    fb_var_screeninfo var;
    EXPECT_EQ(-1, ioctl(master, FBIOGET_VSCREENINFO, &var));
    EXPECT_EQ(ENOTTY, errno);

    drm_mode_create_dumb create;
    const uint32_t framebuffer = AddBuffer(master, create);
    EXPECT_EQ(EACCES, SetCrtc(other, framebuffer));
    EXPECT_EQ(0, SetCrtc(master, framebuffer));
    vp_drm_state state;
    vp_drm_read_state(kCard, &state);
    EXPECT_FALSE(state.console_shown);

    // Removing the framebuffer a CRTC shows switches the CRTC off.
    uint32_t id = framebuffer;
    EXPECT_EQ(0, ioctl(master, DRM_IOCTL_MODE_RMFB, &id));
    vp_drm_read_state(kCard, &state);
    EXPECT_EQ(0, state.width);

    // A buffer made in the place of one that was drawn on starts black.
    drm_mode_map_dumb map = {};
    map.handle = create.handle;
    ASSERT_EQ(0, ioctl(master, DRM_IOCTL_MODE_MAP_DUMB, &map));
    void* pixels =
        mmap(nullptr, create.size, PROT_READ | PROT_WRITE, MAP_SHARED, master, off_t(map.offset));
    ASSERT_NE(MAP_FAILED, pixels);
    std::memset(pixels, 0xff, create.size);
    drm_mode_destroy_dumb destroy = {create.handle};
    EXPECT_EQ(0, ioctl(master, DRM_IOCTL_MODE_DESTROY_DUMB, &destroy));
    AddBuffer(master, create);
    EXPECT_EQ(0u, static_cast<uint32_t*>(pixels)[0]);

    // The next opener after the master has closed is master.
    close(master);
    close(other);
    const int next = open(kCard, O_RDWR);
    EXPECT_EQ(0, SetCrtc(next, 0));
    munmap(pixels, create.size);
    close(next);
}
