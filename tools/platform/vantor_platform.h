// SPDX-License-Identifier: MIT
/*
 * vantor_platform.h - a stand-in for the kernel interfaces libvantor uses.
 *
 * Linked into a test program (before the C library) or preloaded into any program,
 * libvantor-platform.so interposes open, ioctl, mmap, select, poll and friends so that the
 * library finds a framebuffer device or DRM card, its fonts and input devices that exist only in
 * this process: real files in a private directory that is removed at exit. Paths under
 * /dev/fb, /dev/dri/, /dev/input/, /sys/class/input/ and /usr/share/fonts/vantor/ are virtual (a
 * path there that was never created is missing, whatever the host has); everything else
 * passes through to the real system unchanged.
 *
 * Functions returning int answer 0 on success and -1 for an unknown device or path,
 * bad arguments or a failed system call. All of them may be called from any thread.
 */
#ifndef VANTOR_PLATFORM_H
#define VANTOR_PLATFORM_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Later fields default to zero in C++ too, so a short initializer list such as
 * {w, h, w, h, 32, 0} stays complete under -Wextra. */
#ifdef __cplusplus
#define VP_ZERO = 0
#else
#define VP_ZERO
#endif

/* What the two framebuffer ioctls report. line_length 0 means xres_virtual * bpp / 8.
 * The fields after line_length may be left zero: the usual layout of the depth, the
 * visible page at the top left. */
typedef struct vp_screen {
    int xres, yres;
    int xres_virtual, yres_virtual;
    int bits_per_pixel;
    int line_length;
    int layout VP_ZERO;  /* VP_XRGB8888 ...; bits_per_pixel 0 takes the layout's depth */
    int xoffset VP_ZERO; /* where the visible xres x yres page starts */
    int yoffset VP_ZERO;
} vp_screen;

/* Pixel layouts, named by their bits from high to low. VP_XRGB8888 (0) is the usual
 * layout of each depth: XRGB8888 at 32 bits, RGB888 at 24, RGB565 at 16, RGB444 at 12
 * and a palette at 8. */
enum {
    VP_XRGB8888 = 0,
    VP_XBGR8888, /* red in the low byte, as vfb and many BGR panels */
    VP_RGBX8888,
    VP_BGRX8888,
    VP_RGB888,
    VP_BGR888,
    VP_RGB565,
    VP_BGR565,
    VP_PALETTE8,  /* 8 bits, pseudo-colour */
    VP_NO_FIELDS, /* every bitfield zero, as some old drivers report */
    VP_LAYOUT_COUNT
};

/* Failures a framebuffer device can be told to show, combined with |. */
enum {
    VP_FAIL_OPEN = 1,        /* open and fopen fail with ENOENT */
    VP_FAIL_VSCREENINFO = 2, /* FBIOGET_VSCREENINFO fails with EINVAL */
    VP_FAIL_FSCREENINFO = 4, /* FBIOGET_FSCREENINFO fails with EINVAL */
    VP_FAIL_MMAP = 8,        /* mmap fails with ENOMEM */
    VP_FAIL_OPEN_ACCESS = 16 /* open and fopen fail with EACCES */
};

/* The exit status of a program stopped because its key script ran out. */
#define VP_EXIT_SCRIPT_EXHAUSTED 86

/* Forgets every virtual device, file, directory mapping, script, hook, failure and the
 * exit mode. Descriptors and mappings a program still holds keep working on their (now
 * unlinked) files but are no longer counted; pointers from vp_fb_pixels become invalid. */
void vp_reset(void);

/* Keeps the virtual files in dir, an existing directory shared with other processes
 * (a simulator session), instead of a private directory of this process. Devices added
 * afterwards use the files already there: the framebuffer keeps its pixels and an event
 * node its queued records. This process removes nothing there, at reset or at exit.
 * Call it before adding anything. */
int vp_attach(const char* dir);

/* Framebuffer devices. Adding a path again replaces the device: the program's old
 * descriptors and mappings keep the old memory and are no longer counted. */
int vp_fb_add(const char* path, const vp_screen* screen);
int vp_fb_fail(const char* path, int failures); /* replaces the device's failures */
uint32_t* vp_fb_pixels(const char* path);       /* the whole device memory, rows of line_length */
int vp_fb_open_count(const char* path);         /* descriptors open on it right now */
int vp_fb_close_count(const char* path);        /* close calls on its descriptors so far */
int vp_fb_unmap_count(const char* path);        /* munmap calls on mappings of it so far */
int vp_fb_pan_count(const char* path);          /* FBIOPAN_DISPLAY requests answered so far */

/* DRM cards (paths under /dev/dri/). A card has one display on a connector of
 * connector_type (DRM_MODE_CONNECTOR_*, 0 unknown) with two modes: a smaller one listed
 * first and width x height, the preferred one. Its first CRTC shows the console's
 * framebuffer in the preferred mode until a program sets its own. Dumb buffers (up to
 * four at once, rows padded to 64 bytes, black when made) are mapped like the kernel's.
 * The first descriptor opened on the card is the DRM master until it is closed; a mode
 * set from any other is refused with EACCES. Requests of other kinds (the fbdev ones)
 * fail with ENOTTY. */
typedef struct vp_drm_card {
    int width, height;
    int connector_type VP_ZERO;
    int flags VP_ZERO; /* VP_DRM_* */
} vp_drm_card;

enum {
    VP_DRM_NO_DUMB = 1,  /* no dumb buffer capability; CREATE_DUMB fails with ENOSYS */
    VP_DRM_NO_DIRTY = 2, /* DIRTYFB fails with ENOSYS, as drivers without the hook */
    VP_DRM_ONLY_16 = 4,  /* preferred depth 16; a 32-bit framebuffer is refused */
    VP_DRM_EXTERNAL = 8  /* a connected HDMI screen (1024x768) is listed before the display */
};

/* What the card shows and what was asked of it. */
typedef struct vp_drm_state {
    int console_shown;         /* the first CRTC shows the console again, in its mode */
    int width, height;         /* its mode, 0 x 0 when off */
    int pitch, bits_per_pixel; /* of the program's buffer it shows, else 0 */
    int dirty_count;           /* DIRTYFB requests so far */
    int last_dirty[4];         /* the last one's first rectangle: x, y, width, height */
    int buffers;               /* dumb buffers not destroyed */
    int framebuffers;          /* framebuffers added and not removed */
    int master_held;           /* a descriptor (or another process) is DRM master */
} vp_drm_state;

int vp_drm_add(const char* path, const vp_drm_card* card);
int vp_drm_connect(const char* path, int connected);     /* plugs or unplugs the display */
int vp_drm_master_elsewhere(const char* path, int held); /* another process is master */
uint32_t* vp_drm_pixels(const char* path); /* the buffer the first CRTC shows, or NULL */
int vp_drm_read_state(const char* path, vp_drm_state* state);

/* Plain files at virtual paths (created with their parent directories), and whole
 * virtual directories served from a real one (say the build's fonts). */
int vp_file_add(const char* path, const void* data, size_t size);
int vp_file_remove(const char* path);
int vp_dir_map(const char* virtual_dir, const char* host_dir);

/* The virtual terminal console /dev/tty0, missing until vp_vt_add makes it in mode
 * 0 (KD_TEXT) or 1 (KD_GRAPHICS). Its descriptors answer KDGETMODE and KDSETMODE; the
 * mode lives in the directory, so processes attached to one directory share it.
 * vp_vt_mode is the mode now, or -1 without a console. */
int vp_vt_add(int mode);
int vp_vt_mode(void);

/* Input devices: the name file /sys/class/input/input<N>/name (name plus a newline),
 * the event node /dev/input/event<M> and the directory /sys/class/input/input<N>/event<M>
 * that tells M, as the kernel has them. The node reads like an evdev node: select and
 * poll wait on it and each read of sizeof(struct input_event) takes one record.
 * vp_input_add makes M equal to N, vp_input_add_numbered takes M (-1 if another device
 * has that node). A NULL name makes the node alone; vp_input_add_name makes the name
 * file alone. Removing a device unplugs it: a program's open node then polls as
 * POLLHUP | POLLERR (select finds it readable) and every read fails with ENODEV. */
int vp_input_add(int index, const char* name);
int vp_input_add_numbered(int index, int event, const char* name);
int vp_input_add_name(int index, const char* name);
int vp_input_remove(int index);
int vp_input_event(int index, int type, int code, int value); /* queues one record */
/* Queues what the TCA8418 driver sends for one key change (value 1 press, 0 release):
 * EV_MSC/MSC_SCAN (with the key code as scan code), EV_KEY, EV_SYN/SYN_REPORT. */
int vp_input_key(int index, int code, int value);
int vp_input_press(int index, int code); /* vp_input_key for a press, then its release */
int vp_input_open_count(int index);

/* Called when a program selects or polls on an event node with nothing queued, before
 * the wait: the moment it starts to wait for a key. The screen can be looked at from
 * here, and records queued here are what the program reads next. */
typedef void (*vp_wait_hook)(int index, void* user);
void vp_set_wait_hook(vp_wait_hook hook, void* user);

/* Key script: device codes separated by commas or blanks (NULL takes the script away).
 * At each select or poll on the device's empty node, after the hook, the next code is
 * queued as a press and its release (vp_input_press), so a program gets a new key only
 * once it has read every record of the last one. When the script is used up, a wait
 * that could block (any time-out but zero) waits as usual or, with
 * vp_set_exit_when_exhausted(1), prints one line on stderr and ends the process with
 * VP_EXIT_SCRIPT_EXHAUSTED, so a test never hangs. */
int vp_input_script(int index, const char* codes);
int vp_input_script_left(int index);
void vp_set_exit_when_exhausted(int enabled);

/* Faults. vp_fail_call makes the nth use from now (1 is the next) of one call fail with
 * errno error; vp_short_call makes the nth read or write move half of what was asked
 * (at least one byte). Calls: "open" (open, openat and their forms), "read", "write",
 * "fsync", "rename", "ioctl", "mmap", "poll" (poll and ppoll). Each armed fault fires once; every
 * use of the call in the process counts, on any descriptor, so arm just before the operation under
 * test. vp_reset disarms. */
int vp_fail_call(const char* call, int error, int nth);
int vp_short_call(const char* call, int nth);

#ifdef __cplusplus
}
#endif

#endif
