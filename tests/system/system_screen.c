/* Draws one fixed screen with every kind of drawing the library does and leaves it
 * there, so the same screen can be read from a real framebuffer and from the simulator
 * and compared pixel for pixel. A DRM card shows it only while the program runs: given
 * a second argument, the program says "held" and keeps the card until that file exists.
 *   vantor_system_screen [DEVICE [RELEASE-FILE]] */
#include <stddef.h>
#include <stdio.h>
#include <unistd.h>
#include <vantor.h>

int main(int argc, char** argv) {
    const char* device = argc > 1 ? argv[1] : "/dev/fb0";
    if (InitFramebuffer(device) == NULL) return 1;
    InitCanvas(0, 0, 800, 480);
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
    if (argc > 2) {
        puts("held");
        fflush(stdout);
        while (access(argv[2], F_OK) != 0) usleep(50000);
    }
    return 0;
}
