/*
 * vantor_platform.h - a stand-in for the kernel interfaces libvantor uses.
 *
 * Linked into a test program (before the C library) or preloaded into any program,
 * libvantor-platform.so interposes open, ioctl, mmap, select and friends so that the
 * library finds a framebuffer device, its fonts and input devices that exist only in
 * this process: files in a private directory that is removed at exit. Paths under
 * /dev/fb, /dev/input/, /sys/class/input/ and /usr/share/fonts/vantor/ are virtual;
 * everything else passes through to the real system unchanged.
 */
#ifndef VANTOR_PLATFORM_H
#define VANTOR_PLATFORM_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* What the two framebuffer ioctls report. line_length 0 means xres_virtual * bpp / 8. */
typedef struct vp_screen {
    int xres, yres;
    int xres_virtual, yres_virtual;
    int bits_per_pixel;
    int line_length;
} vp_screen;

/* Failures a framebuffer device can be told to show, combined with |. */
enum {
    VP_FAIL_OPEN = 1,        /* open fails with ENOENT */
    VP_FAIL_VSCREENINFO = 2, /* FBIOGET_VSCREENINFO fails with EINVAL */
    VP_FAIL_FSCREENINFO = 4, /* FBIOGET_FSCREENINFO fails with EINVAL */
    VP_FAIL_MMAP = 8         /* mmap fails with ENOMEM */
};

/* Forgets every virtual device, file, mapping, script and hook. Descriptors a program
 * still holds keep working on their (now unlinked) files. */
void vp_reset(void);

/* Framebuffer devices. Return 0, or -1 for an unknown path or bad arguments. */
int vp_fb_add(const char* path, const vp_screen* screen);
int vp_fb_fail(const char* path, int failures);
uint32_t* vp_fb_pixels(const char* path); /* the device memory, rows of line_length bytes */
int vp_fb_open_count(const char* path);   /* descriptors open on it right now */
int vp_fb_unmap_count(const char* path);  /* munmap calls on mappings of it so far */

/* Plain files at virtual paths, and whole virtual directories served from a real one. */
int vp_file_add(const char* path, const void* data, size_t size);
int vp_file_remove(const char* path);
int vp_dir_map(const char* virtual_dir, const char* host_dir);

/* Input devices: the name file /sys/class/input/input<N>/name (name plus a newline)
 * and the event node /dev/input/event<N>, which reads like an evdev node. A NULL name
 * makes the node alone. */
int vp_input_add(int index, const char* name);
int vp_input_remove(int index);
int vp_input_event(int index, int type, int code, int value); /* queues one record */
int vp_input_press(int index, int code);                      /* a press and its release */
int vp_input_open_count(int index);

/* Called each time a program selects on an event node with nothing queued: the moment
 * it starts to wait for a key. The screen can be looked at from here. */
typedef void (*vp_wait_hook)(int index, void* user);
void vp_set_wait_hook(vp_wait_hook hook, void* user);

/* Key script: device codes separated by commas or blanks; at each wait on an empty node
 * the next one is queued as a key press (without a release, so that exactly one wait
 * passes per key). When the script is used up, a wait
 * either times out as usual or, with vp_set_exit_when_exhausted(1), the process prints
 * one line on stderr and exits with status 70, so a test never hangs. */
int vp_input_script(int index, const char* codes);
void vp_set_exit_when_exhausted(int enabled);
int vp_input_script_left(int index);

#ifdef __cplusplus
}
#endif

#endif
