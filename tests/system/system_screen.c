/* Draws one fixed screen with every kind of drawing the library does and leaves it
 * there, so the same screen can be read from a real framebuffer and from the simulator
 * and compared pixel for pixel. A second argument turns the picture on the panel by
 * that many degrees; a third, "hold", keeps the kernel console off the picture and the
 * program running for three seconds after drawing. */
#include <stddef.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>
#include <vantor.h>

int main(int argc, char** argv) {
    const char* device = argc > 1 ? argv[1] : "/dev/fb0";
    if (InitFramebuffer(device) == NULL) return 1;
    if (argc > 2 && setRotation(atoi(argv[2])) != 0) return 2;
    const int hold = argc > 3 && strcmp(argv[3], "hold") == 0;
    if (hold && setConsoleGraphics(VANTOR_CONSOLE_OFF) != 0) return 3;
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
    if (hold) sleep(3);
    return 0;
}
