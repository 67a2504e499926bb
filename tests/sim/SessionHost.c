/* One step of a multi-process flow under the simulator. "paint" leaves a red cell at
 * the top left of the screen and ends; "key" prints the first screen pixel as it finds
 * it (read straight from the device) and the next key the library reads: a press comes
 * as the driver sends it (scan code, key, sync), so records that are no key are passed
 * over, as every host does. */
#include <fcntl.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "vantor.h"

static int Paint(void) {
    if (InitFramebuffer("/dev/fb0") == NULL || InitCanvas(0, 0, 64, 32) != 0) return 1;
    WriteTextWithBackground(0, 0, " ", 0xFFFFFF, 0xFF0000, 0);
    return Update() == 0 ? 0 : 1;
}

static int NextKey(void) {
    int key = -1;
    for (int record = 0; record < 8 && key < 0; ++record) key = WaitKey(5.0f);
    return key;
}

static int Key(void) {
    uint32_t pixel = 0;
    const int fd = open("/dev/fb0", O_RDONLY);
    if (fd < 0 || read(fd, &pixel, sizeof(pixel)) != (ssize_t)sizeof(pixel)) return 1;
    close(fd);
    if (InitKeypad() != 0) return 1;
    printf("%06x %d\n", (unsigned)pixel, NextKey());
    return 0;
}

int main(int argc, char** argv) {
    if (argc == 2 && strcmp(argv[1], "paint") == 0) return Paint();
    if (argc == 2 && strcmp(argv[1], "key") == 0) return Key();
    fprintf(stderr, "usage: %s paint|key\n", argv[0]);
    return 2;
}
