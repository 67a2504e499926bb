// SPDX-License-Identifier: MIT
/*
 * demo - a recovery/update screen as a device would show it.
 *
 *   demo [DEVICE [WIDTHxHEIGHT]]      (default /dev/fb0, the panel's own size)
 *
 * A title in the bold font, aligned and inverse text, a menu, Yes/No and Ok dialogs,
 * and a progress window that copies two files while its bar advances. It runs
 * unchanged on a device and in the desk simulator (vantor-sim).
 *
 * Keys come from the TCA8418 keypad, or from the devices VANTOR_KEYPAD names (e.g.
 * "gpio-keys" or "tca8418,/dev/input/event3"); VANTOR_KEYCODES=common adds the codes of
 * buttons and keyboards (arrows, Enter, Esc, volume, power).
 */
#define _POSIX_C_SOURCE 200809L

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/utsname.h>
#include <unistd.h>
#include <vantor.h>

#define WHITE 0xFFFFFF
#define BLACK 0x000000
#define AMBER 0xFFB000
#define GREY 0x808080

static int width = 800;
static int height = 480;

/* Two stand-in images of 6 MiB and 2 MiB, so the copy has something to move; named
 * after the process so that two demos never share them. */
static char sources[2][64];
static char targets[2][64];

static void name_images(void) {
    const char* parts[2] = {"kernel", "rootfs"};
    for (int i = 0; i < 2; ++i) {
        snprintf(sources[i], sizeof(sources[i]), "/tmp/vantor-demo-%d-%s.img", (int)getpid(),
                 parts[i]);
        snprintf(targets[i], sizeof(targets[i]), "/tmp/vantor-demo-%d-%s.new", (int)getpid(),
                 parts[i]);
    }
}

static int make_image(const char* path, long mebibytes) {
    FILE* file = fopen(path, "wb");
    if (file == NULL) return -1;
    static unsigned char block[1 << 20];
    for (size_t i = 0; i < sizeof(block); ++i) block[i] = (unsigned char)(i * 131u);
    for (long m = 0; m < mebibytes; ++m) fwrite(block, 1, sizeof(block), file);
    return fclose(file);
}

static void remove_images(void) {
    for (int i = 0; i < 2; ++i) {
        unlink(sources[i]);
        unlink(targets[i]);
    }
}

static void draw_home_screen(void) {
    int cell_width = 8, cell_height = 16;
    getFontSize(1, &cell_width, &cell_height);
    Clear();
    WriteAlignedTextWithBackground(0, 8, "Vantor recovery", BLACK, WHITE, 1,
                                   eAlignCenter | eAlignFillLine);
    WriteText(16, 8 + 2 * cell_height, "Device: demo board rev. B", WHITE, 0);
    WriteInvText(16, 8 + 3 * cell_height + 4, " Update 2.1 available ", AMBER, 0);
    WriteAlignedTextWithBackground(16, height - cell_height - 8, "fw 2.0.3", GREY, BLACK, 0,
                                   eAlignRight);
    WriteText(16, height - cell_height - 8, "Up/Down: choose   OK: select", GREY, 0);
    Update();
}

static int ask(const char** lines, int type) {
    const int box = width < 420 ? width - 20 : 400; /* small panels get a narrower box */
    InitDialog(width / 2 - box / 2, height / 2 - 60, box, 120);
    int answer = ShowDialog(lines, type, eAlignLeft);
    HideDialog();
    draw_home_screen();
    return answer;
}

static int install_update(void) {
    const char* confirm[] = {"Install update 2.1?", "", "The device restarts afterwards.", NULL};
    if (ask(confirm, eDialogYesNo) != 1) return 0;

    name_images();
    if (make_image(sources[0], 6) != 0 || make_image(sources[1], 2) != 0) {
        fprintf(stderr, "demo: cannot write the images to /tmp\n");
        return -1;
    }
    const int bar = width < 520 ? width - 20 : 500;
    InitProgress(width / 2 - bar / 2, height / 2 - 40, bar, 70);
    ShowProgress("Copying kernel...", eAlignLeft, 0.0f);
    int result = CopyFileWithProgress(sources[0], targets[0], NULL, 75.0f);
    /* Between two files the user may still cancel; a look at the keys costs nothing.
     * Each look reads one record and a press comes as three (scan code, key, sync). */
    for (int look = 0; result == 0 && look < 3; ++look) {
        if (WaitKey(0.0f) == VANTOR_KEY_CANCEL) result = -1;
    }
    if (result == 0) {
        UpdateProgress("Copying root file system...", eAlignLeft, 75.0f);
        result = CopyFileWithProgress(sources[1], targets[1], NULL, 25.0f);
    }
    HideProgress();
    remove_images();

    const char* done[] = {result == 0 ? "Update installed." : "Update failed.", NULL};
    ask(done, eDialogOk);
    return result;
}

static void show_device_info(void) {
    struct utsname system;
    char kernel[96] = "Kernel: unknown";
    char screen[64];
    if (uname(&system) == 0) snprintf(kernel, sizeof(kernel), "Kernel: %.80s", system.release);
    snprintf(screen, sizeof(screen), "Screen: %dx%d", width, height);
    const char* lines[] = {"Device information", kernel, screen, NULL};
    ask(lines, eDialogOk);
}

static int confirm_reboot(void) {
    const char* lines[] = {"Reboot the device now?", NULL};
    return ask(lines, eDialogYesNo) == 1;
}

static void choose_keys(void) {
    const char* codes = getenv("VANTOR_KEYCODES");
    if (setKeyDevices(getenv("VANTOR_KEYPAD")) != 0)
        fprintf(stderr, "demo: VANTOR_KEYPAD is not a usable list; using the keypad\n");
    if (codes != NULL && strcmp(codes, "common") == 0) resetKeyCodes(VANTOR_KEYCODES_COMMON);
}

int main(int argc, char** argv) {
    const char* device = argc > 1 ? argv[1] : "/dev/fb0";
    if (argc > 2 && sscanf(argv[2], "%dx%d", &width, &height) != 2) {
        fprintf(stderr, "usage: %s [DEVICE [WIDTHxHEIGHT]]\n", argv[0]);
        return 2;
    }
    if (InitFramebuffer(device) == NULL) return 1;
    /* Lay out for the panel we run on unless the caller asked for a size. */
    if (argc <= 2) getScreenSize(&width, &height);
    if (InitCanvas(0, 0, width, height) != 0) return 1;
    draw_home_screen();
    choose_keys();
    if (InitKeypad() != 0) {
        fprintf(stderr, "demo: no keypad found; nothing to choose with\n");
        return 1;
    }

    const char* entries[] = {"Install update", "Show device info", "Reboot", NULL};
    for (;;) {
        InitMenu(40, 110);
        int choice = ShowMenu(entries, eMenuVertical, eAlignLeft);
        if (choice == 1) {
            install_update();
        } else if (choice == 2) {
            show_device_info();
        } else if (choice == 3 && confirm_reboot()) {
            printf("demo: a device would reboot now\n");
            break;
        } else if (choice <= 0) {
            break;
        }
    }
    Clear();
    return 0;
}
