// SPDX-License-Identifier: MIT
/* A minimal C host: it must compile as C99 with every warning an error and link
 * against the installed library found through pkg-config or CMake. */
#include <stdio.h>
#include <vantor.h>

int main(void) {
    const unsigned char rgb[6] = {0x11, 0x22, 0x33, 0x44, 0x55, 0x66};
    unsigned char pixels[8];
    int bytes = RGB_to_RGBA(rgb, pixels, 6);
    int align = eAlignCenter | eAlignFillLine;
    /* Without InitFramebuffer the screen calls refuse, with their documented codes. */
    printf("%d %02x%02x%02x%02x %d %d %d\n", bytes, pixels[0], pixels[1], pixels[2], pixels[3],
           InitCanvas(0, 0, 10, 10), Clear(), align);
    return bytes == 8 ? 0 : 1;
}
