// SPDX-License-Identifier: MIT
/*
 * vantor.h - the C interface of libvantor.
 *
 * Text, menus, dialogs and a progress window on a Linux display (fbdev or DRM), key
 * presses from a TCA8418 keypad or any other key devices (setKeyDevices, setKeyCode).
 * Every call runs on the caller's thread; none is thread-safe. Colours are 0x00RRGGBB.
 * Font 0 is the regular font, 1 the bold one.
 *
 * Start with InitFramebuffer, then InitCanvas for text, InitKeypad before menus and
 * dialogs. Result 0 is success; the failure codes of each call are listed with it.
 *
 * Panels: 32 bits in any byte order (XRGB8888, XBGR8888, RGBX8888, BGRX8888, and any
 * other 8-bit-channel layout), 24 bits (RGB888, BGR888), 16 bits (RGB565, BGR565), any
 * row padding, the visible page at any pan offset. Other 16/24/32-bit layouts with
 * channels of 1 to 8 bits work too; palettes, 12 bits and FOURCC modes are refused.
 * Colours are cut to a narrower channel by keeping its top bits (see docs/PANELS.md).
 */
#ifndef VANTOR_H
#define VANTOR_H

#include <stddef.h> /* NULL, which several results are compared with */
#include <stdint.h>

#include "vantor/Enums.h"

#ifdef __cplusplus
using Vantor::eAlignCenter;
using Vantor::eAlignFillLine;
using Vantor::eAlignLeft;
using Vantor::eAlignMode;
using Vantor::eAlignRight;
using Vantor::eDialogOk;
using Vantor::eDialogOkCancel;
using Vantor::eDialogType;
using Vantor::eDialogYesNo;
using Vantor::eMenuHorizontal;
using Vantor::eMenuOrientation;
using Vantor::eMenuVertical;
extern "C" {
#endif

#if defined(__GNUC__)
#define VANTOR_C_API __attribute__((visibility("default")))
#else
#define VANTOR_C_API
#endif

/* Key codes that WaitKey, menus and dialogs deliver. */
#define VANTOR_KEY_UP 108     /* previous entry */
#define VANTOR_KEY_DOWN 114   /* next entry */
#define VANTOR_KEY_OK 10      /* choose */
#define VANTOR_KEY_SELECT 103 /* choose */
#define VANTOR_KEY_BACK 26    /* leave with VANTOR_MENU_BACK */
#define VANTOR_KEY_CANCEL 3   /* leave with VANTOR_MENU_CANCEL */
#define VANTOR_KEY_HOME 9     /* leave with VANTOR_MENU_HOME */

/* What a menu, or a dialog with buttons, answers when the user leaves it by those keys. */
#define VANTOR_MENU_BACK 0
#define VANTOR_MENU_CANCEL (-3)
#define VANTOR_MENU_HOME (-4)

/* --- State ------------------------------------------------------------------ */

/* Opens the display device, maps it and loads the fonts /usr/share/fonts/vantor/lr.tf
 * and lb.tf. The device is either kind of node: an fbdev framebuffer ("/dev/fb0") or a
 * DRM/KMS card ("/dev/dri/card0"), on which the library sets the preferred mode of the
 * connected display (a built-in panel first) in a buffer of its own, and gives the
 * previous mode back when the framebuffer is replaced or the library unloaded. Returns
 * the library's state record (opaque) or NULL with one line on stderr (and, for a
 * device it cannot draw on, one line on stdout naming what it found there: the
 * device's layout; or a card without dumb buffers, without a connected display, or
 * held by another program). A second call replaces the first framebuffer and deletes
 * the canvas and widgets that drew on it (see docs/DISPLAYS.md). */
VANTOR_C_API void* InitFramebuffer(const char* device);

/* --- Screen ------------------------------------------------------------------ */

/* Turns the picture on a panel that is mounted turned: degrees is 0, 90, 180 or 270,
 * clockwise, the way the kernel console's fbcon=rotate:1 turns it by 90. The host's
 * top-left pixel is shown at the panel's top-right corner for 90, bottom-right for
 * 180 and bottom-left for 270; on a W x H panel, logical (x, y) is shown at panel
 * (W-1-y, x) for 90, (W-1-x, H-1-y) for 180 and (y, H-1-x) for 270. Every other call
 * keeps working in the turned (logical) coordinates, clips at the logical screen's
 * edges and puts back exactly what it covered; getScreenSize reports the logical size.
 * Call it right after InitFramebuffer, which starts every framebuffer at 0.
 *  0 ok;  -1 any other angle (360 and -90 too);  -2 no framebuffer;  -3 the main
 *  canvas, a dialog, menu or progress window exists (nothing changes). */
VANTOR_C_API int setRotation(int degrees);

/* Makes the main canvas at (x, y), width x height pixels, replacing an earlier one.
 *  0 ok;  -2 no framebuffer, size below 1 or too large. Too large, for the canvas,
 *  dialog, progress window and menu alike: more pixels than four screens' worth (at
 *  least 65536), which no panel could show. */
VANTOR_C_API int InitCanvas(int x, int y, int width, int height);
/* Draws the main canvas's texts and shows it.  0 ok;  -2 no framebuffer or no canvas. */
VANTOR_C_API int Update(void);
/* Puts back the screen under progress window, dialog, menu and main canvas.
 *  0 ok;  -2 no framebuffer. */
VANTOR_C_API int Restore(void);
/* Deletes every text and menu entry, blanks the canvases, shows the empty main canvas.
 *  0 ok;  2 (positive) no framebuffer;  -2 no main canvas. */
VANTOR_C_API int Clear(void);

/* Keeps the kernel's text console (fbcon) off the picture on a framebuffer it shares:
 * the foreground virtual terminal goes into graphics mode (KDSETMODE KD_GRAPHICS), so
 * no cursor blinks and no kernel or getty message is drawn over the screen. The
 * library never touches the console unless this is called.
 *  VANTOR_CONSOLE_OFF: off while this process runs. The mode found before is put back
 *    at VANTOR_CONSOLE_ON, when the library is unloaded (also at exit), and by the
 *    crash handler after its report for SIGSEGV and SIGABRT. A process killed by
 *    SIGTERM or SIGKILL gives nothing back: end on SIGTERM through exit().
 *  VANTOR_CONSOLE_OFF_KEPT: off, and left off after the process ends, for the commands
 *    of a script; the script gives it back at its end (an EXIT trap).
 *  VANTOR_CONSOLE_ON: the foreground terminal back in text mode now, whoever left it
 *    off; fbcon then redraws its text.
 *  0 ok;  -1 unknown mode;  -19 no virtual terminal (no /dev/tty0, a serial console
 *  only, inside the simulator): nothing changed;  -13 the process may not change the
 *  console (opening /dev/tty0 or KDSETMODE refused; it normally takes root). */
#define VANTOR_CONSOLE_ON 0
#define VANTOR_CONSOLE_OFF 1
#define VANTOR_CONSOLE_OFF_KEPT 2
VANTOR_C_API int setConsoleGraphics(int mode);

/* --- Text and colour ---------------------------------------------------------- */

/* Each adds one line of text to the main canvas; it shows at the next Update.
 *  0 ok, and also 0 (nothing added) without framebuffer or canvas;  -1 font not 0 or 1;
 *  -2 out of memory. */
VANTOR_C_API int WriteText(int x, int y, const char* text, uint32_t colour, int font);
/* Inverse video: canvas background colour on cells of the given colour. */
VANTOR_C_API int WriteInvText(int x, int y, const char* text, uint32_t colour, int font);
VANTOR_C_API int WriteTextWithBackground(int x, int y, const char* text, uint32_t fg, uint32_t bg,
                                         int font);
/* align is an eAlignMode: left, centre or right, optionally plus eAlignFillLine. */
VANTOR_C_API int WriteAlignedTextWithBackground(int x, int y, const char* text, uint32_t fg,
                                                uint32_t bg, int font, int align);
/* Size of the visible page in pixels (xres x yres, cut to the virtual screen), so a
 * host can lay out for any panel; either pointer may be NULL.  0 ok;  -2 no framebuffer.
 * With the picture turned by 90 or 270 degrees (setRotation) width and height swap. */
VANTOR_C_API int getScreenSize(int* width, int* height);
/* Cell size of a font; either pointer may be NULL.  0 ok;  -2 no framebuffer or bad font. */
VANTOR_C_API int getFontSize(int font, int* width, int* height);
/* How the text handed to later calls is read: the text calls, menu entries, dialog
 * lines, progress captions and the copy's caption. Text handed over earlier keeps its
 * meaning. Needs no framebuffer.  0 ok;  -1 any other value.
 *  VANTOR_TEXT_BYTES (the default): every byte is one character, looked up in the font
 *    by its value (1 to 255); a character the font lacks leaves its cell as it was.
 *  VANTOR_TEXT_UTF8: UTF-8. Each character is looked up by its Unicode code point and
 *    takes one cell, so widths, alignment and bands count characters, not bytes. A
 *    character the font lacks shows as the font's U+FFFD, else its '?'. A byte that is
 *    not part of a well-formed sequence (overlong forms and surrogates included) is
 *    the Latin-1 character of its value, so Latin-1 text still reads right. Control
 *    characters (below 0x20, and 0x7F) take their cell and show nothing, unless the
 *    font has a glyph for them. */
#define VANTOR_TEXT_BYTES 0
#define VANTOR_TEXT_UTF8 1
VANTOR_C_API int setTextEncoding(int encoding);
/* Packed R,G,B bytes to the library's colour words 0x00RRGGBB (B,G,R,0 bytes). dst must hold
 * 4 bytes per whole RGB triple. Returns 4*size/3;  -2 NULL pointer or size < 1. */
VANTOR_C_API int RGB_to_RGBA(const unsigned char* src, unsigned char* dst, int size);

/* --- Keys --------------------------------------------------------------------- */

/* Opens the key devices: by default the input device named "tca8418..." among
 * input0..input8, else those setKeyDevices chose (at most 16, each close-on-exec).
 * Call it again to find devices that went away and came back.
 *  0 at least one device open;  -19 none found or openable. */
VANTOR_C_API int InitKeypad(void);
/* Waits at most timeout seconds (0 looks once; negative or NaN fails at once; huge
 * values wait about 68 years) for a key press on any of the open devices, and answers
 * one record per call, taking turns so that no device starves another. Returns a
 * VANTOR_KEY_* code, or -1: no key pressed, no keypad, a key that gives no code, or
 * the last open device went away. A device that goes away is closed and the wait goes
 * on with the others; once none is left, later calls wait out their time-out until
 * InitKeypad finds one again. */
VANTOR_C_API int WaitKey(float timeout);

/* Chooses the key devices of the next InitKeypad, as a comma-separated list. An entry
 * starting with /dev/input/ is an event node; any other is a name prefix matching every
 * input device whose /sys/class/input/inputN/name begins with it (any N). Devices are
 * opened in list order, each once; blanks around entries are ignored. Examples:
 * "gpio-keys", "tca8418,gpio-keys", "adc-keys,/dev/input/event3". NULL or "" restores
 * the default, the "tca8418..." device among input0..input8. Needs no framebuffer.
 *  0 ok;  -1 more than 16 entries, an entry longer than 255 bytes, or no entry. */
VANTOR_C_API int setKeyDevices(const char* devices);

/* Key-code sets for resetKeyCodes. The default, VANTOR_KEYCODES_TCA8418, is the keypad's
 * seven keys: KEY_5 up, KEY_6 down, KEY_PROG2 ok, KEY_M select, KEY_WWW back,
 * KEY_SLASH cancel, KEY_COFFEE home. VANTOR_KEYCODES_COMMON adds the keys of buttons and
 * keyboards: KEY_UP, KEY_LEFT, KEY_VOLUMEUP up; KEY_DOWN, KEY_RIGHT, KEY_VOLUMEDOWN
 * down; KEY_ENTER, KEY_KPENTER, KEY_POWER ok; KEY_SPACE select; KEY_BACKSPACE back;
 * KEY_ESC cancel; KEY_HOME home. */
#define VANTOR_KEYCODES_TCA8418 0
#define VANTOR_KEYCODES_COMMON 1

/* Makes the Linux key code `code` (0..767, <linux/input-event-codes.h>) give `key`, a
 * VANTOR_KEY_* code, or nothing when key is 0. Applies from the next record read, also
 * to a keypad already open.  0 ok;  -1 code or key out of range. */
VANTOR_C_API int setKeyCode(int code, int key);
/* Replaces every key code by a set.  0 ok;  -1 unknown set. */
VANTOR_C_API int resetKeyCodes(int set);

/* --- Dialog ------------------------------------------------------------------- */

/* Makes the dialog box (x, y, w, h), replacing an earlier one.  0 ok;  -2 no framebuffer. */
VANTOR_C_API int InitDialog(int x, int y, int w, int h);
/* Shows the NULL-terminated lines with the buttons of type (0 none, eDialogOk,
 * eDialogOkCancel, eDialogYesNo) and waits for the user's choice.
 * Returns 0 for type 0 at once; else the button id (1 Ok/Yes, 2 Cancel/No), 0 back,
 * -3 cancel, -4 home, -1 unknown type;  -2 no framebuffer, no dialog, lines NULL, or
 * (types 1 to 3) no usable keypad, also when the key device goes away during the wait.
 * The wait sleeps between keys; it does not keep the processor busy. */
VANTOR_C_API int ShowDialog(const char** lines, int type, int align);
/* Blanks the dialog's box.  0 ok;  -2 no framebuffer or no dialog. */
VANTOR_C_API int HideDialog(void);

/* --- Menu --------------------------------------------------------------------- */

/* Makes an empty menu with its top-left corner at (x, y).  0 ok;  -2 no framebuffer.
 * A menu whose entries do not all fit between that corner and the screen's bottom edge
 * (a column) or right edge (a row) shows the entries that fit and scrolls: the selected
 * entry is always shown, a small triangle at either end says that more entries lie
 * beyond it, and the keys keep their meaning (wrapping from the last entry to the first
 * and back). A menu that fits is drawn as it always was. */
VANTOR_C_API int InitMenu(int x, int y);
/* The same, but the entries scroll within the box (x, y, width, height) where it ends
 * before the screen's edge: a column at its bottom, a row at its right edge.
 *  0 ok;  -2 no framebuffer, width or height below 1. */
VANTOR_C_API int InitMenuBox(int x, int y, int width, int height);
/* Appends the NULL-terminated entries (numbered from 1) and lets the user choose.
 * Returns the chosen number, 0 back, -3 cancel, -4 home, -1 no entries;
 *  -2 no framebuffer, no menu, entries NULL, no usable keypad, an entry too wide (a
 *  column) or too tall (a row) for any canvas (then none is added), or the key device
 *  going away during
 *  the wait (the menu is taken off the screen first). */
VANTOR_C_API int ShowMenu(const char** entries, int orientation, int align);
/* The size (width, height) of the menu that ShowMenu with these entries would paint
 * now: the entries appended to those the menu holds, laid out where InitMenu or
 * InitMenuBox placed it (before either, at (0, 0) on the whole screen), as the window
 * onto the entries when they would not fit. Entries are read in the text encoding set by
 * setTextEncoding, as ShowMenu reads them; no keypad is needed.
 *  0 ok;  -1 entries, width or height NULL, or no entries at all (ShowMenu would answer
 *  -1 and paint nothing);  -2 no framebuffer, or a menu ShowMenu would refuse as too
 *  large. On failure the sizes that can be written are 0. */
VANTOR_C_API int getMenuSize(const char** entries, int orientation, int* width, int* height);

/* --- Progress window ---------------------------------------------------------- */

/* Makes the progress window (x, y, w, h) captioned "Progress:".
 *  0 ok;  -2 no framebuffer, size below 1 or too large. */
VANTOR_C_API int InitProgress(int x, int y, int w, int h);
/* Sets text (unless NULL) and percent, saves the screen under the window and shows it.
 *  0 ok;  -2 no framebuffer or no progress window. */
VANTOR_C_API int ShowProgress(const char* text, int align, float percent);
/* Repaints a shown window: only the bar when text is NULL, else the whole window.
 *  0 ok;  -2 no framebuffer or no progress window. */
VANTOR_C_API int UpdateProgress(const char* text, int align, float percent);
/* Puts back what the window covered.  0 ok;  -2 no framebuffer or no progress window. */
VANTOR_C_API int HideProgress(void);

/* --- File copy ---------------------------------------------------------------- */

/* Two calls; both move the progress bar (if InitProgress made one) from where it stands
 * by share percent, with text (may be NULL) as its caption, and print one line on
 * stderr for each failure.
 *
 * CopyFileWithProgress: the simple copy for files below 2 GiB. It writes over the
 * target in place, so a failure can leave the target part old, part new. The target
 * is created with mode 0644 (less the umask), is flushed to storage, and when both
 * are regular files it ends up exactly as long as the source (a device or /proc
 * source never empties a target).
 *  0 ok;  -13 source status unreadable (or 2 GiB and more);  -1 source or target not
 *  openable, or a read failed;  -5 a write, or flushing the target to storage, failed.
 *
 * CopyFileWithProgressEx: the copy for firmware work. Any size; the source may be a
 * regular file or a block device (a partition, sized by its device size); a directory,
 * pipe, character device or /proc file is refused before the target is touched. A
 * regular target is written to a temporary file beside it, synced, renamed into place
 * and its directory synced: on any failure the old target is untouched and no partial
 * file remains. Where the file system can make unnamed files (ext4, tmpfs, btrfs, xfs)
 * the temporary file has no name until the copy is complete, so even a process killed
 * mid-copy leaves nothing; elsewhere (vfat) it is ".NAME.part" beside the target, and
 * the next copy to that target removes what a killed one left (a copy still running
 * holds it: the second copy is refused with -EBUSY). A new target gets mode 0644 (less the umask), an existing one keeps its
 * mode. A block-device target is written in place (refused with -ENOSPC if smaller
 * than the source) and synced. Signals (EINTR) and short writes are handled. With
 * VANTOR_COPY_VERIFY the target is read back from storage and compared; the copy and
 * the read-back then each move the bar by half the share.
 *  0 ok;  -errno of the failing step (-ENOSPC, -EROFS, -EIO for a source that ended
 *  early or a target that read back different, -EISDIR or -EINVAL for an unsized
 *  source, -EINVAL for a NULL path or unknown flags, -ECANCELED after CancelCopy). The
 *  line ends with the system's reason, e.g. "Write error: /data/fw.img: No space left on
 *  device".
 *
 * CancelCopy: asks the running CopyFileWithProgressEx to stop, and may be called from a
 * signal handler (it only sets a flag). The copy stops before its next block, removes
 * its temporary file and answers -ECANCELED: a regular target keeps its old content, a
 * partition keeps what was written so far. A request made while no copy runs stops the
 * next one before it writes. CopyFileWithProgress does not look at it.  Always 0. */
#define VANTOR_COPY_VERIFY 1

VANTOR_C_API int CopyFileWithProgress(const char* source, const char* target, const char* text,
                                      float share);
VANTOR_C_API int CopyFileWithProgressEx(const char* source, const char* target, const char* text,
                                        float share, int flags);
VANTOR_C_API int CancelCopy(void);

#ifdef __cplusplus
}
#endif

#endif /* VANTOR_H */
