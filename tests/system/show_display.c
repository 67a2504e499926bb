/* Makes a DRM display show its emulated framebuffer, as the kernel console does when it
 * takes a framebuffer over: one FBIOPAN_DISPLAY, which commits the mode. Until someone
 * does, the display keeps showing what the firmware left there.
 *   vantor_system_show DEVICE */
#include <fcntl.h>
#include <linux/fb.h>
#include <stdio.h>
#include <sys/ioctl.h>
#include <unistd.h>

int main(int argc, char** argv) {
    struct fb_var_screeninfo var;
    const int fd = argc == 2 ? open(argv[1], O_RDWR) : -1;
    if (fd < 0 || ioctl(fd, FBIOGET_VSCREENINFO, &var) != 0 ||
        ioctl(fd, FBIOPAN_DISPLAY, &var) != 0) {
        perror(argc == 2 ? argv[1] : "usage: vantor_system_show DEVICE");
        return 1;
    }
    close(fd);
    return 0;
}
