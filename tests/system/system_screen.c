// SPDX-License-Identifier: MIT
/* Draws one fixed screen with every kind of drawing the library does and leaves it
 * there, so the same screen can be read from a real framebuffer and from the simulator
 * and compared pixel for pixel. Words after the device: "turn=DEG" turns the picture on
 * the panel; "console-off" keeps the kernel console off the picture while the program
 * runs; "menu" ends with a menu over the screen that waits for a key from the keypad;
 * any other word is a release file: a DRM card shows the screen only while the program
 * runs, so it says "held" and keeps the card until that file exists.
 *   vantor_system_screen [DEVICE [turn=DEG] [console-off] [menu] [RELEASE-FILE]] */
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>
#include <vantor.h>

int main(int argc, char** argv) {
    const char* device = argc > 1 ? argv[1] : "/dev/fb0";
    const char* release = NULL;
    int turn = 0, consoleOff = 0, menu = 0;
    for (int i = 2; i < argc; ++i) {
        if (strncmp(argv[i], "turn=", 5) == 0) {
            turn = atoi(argv[i] + 5);
        } else if (strcmp(argv[i], "console-off") == 0) {
            consoleOff = 1;
        } else if (strcmp(argv[i], "menu") == 0) {
            menu = 1;
        } else {
            release = argv[i];
        }
    }
    if (InitFramebuffer(device) == NULL) return 1;
    if (setRotation(turn) != 0) return 2;
    if (consoleOff && setConsoleGraphics(VANTOR_CONSOLE_OFF) != 0) return 3;
    int width = 800, height = 480;
    getScreenSize(&width, &height); /* the whole screen, turned or not */
    InitCanvas(0, 0, width, height);
    WriteAlignedTextWithBackground(0, 8, "Vantor system test", 0x000000, 0xFFFFFF, 1,
                                   eAlignCenter | eAlignFillLine);
    WriteText(16, 40, "Regular 0123456789 \xe9\xe8\xfc", 0x00FF00, 0);
    WriteInvText(16, 64, "Inverse", 0xFFB000, 0);
    WriteAlignedTextWithBackground(16, 88, "Right", 0x3366FF, 0x202020, 1, eAlignRight);
    Update();
    const char* lines[] = {"A dialog without buttons", NULL};
    InitDialog(400, 300, 380, 60);
    ShowDialog(lines, 0, eAlignLeft);
    InitProgress(40, 300, 320, 70);
    ShowProgress("Forty-two percent", eAlignLeft, 42.0f);
    if (menu) {
        const char* entries[] = {"Keep the picture", "Give the console back", NULL};
        /* By name among every input: devices made earlier in the same boot may have
         * taken the first input numbers. */
        setKeyDevices("tca8418");
        if (InitKeypad() != 0 || InitMenu(420, 140) != 0) return 4;
        if (ShowMenu(entries, eMenuVertical, eAlignLeft) < 0) return 5;
    }
    if (release != NULL) {
        puts("held");
        fflush(stdout);
        while (access(release, F_OK) != 0) usleep(50000);
    }
    return 0;
}
