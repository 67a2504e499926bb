#!/bin/busybox sh
# /init of the test machine. The host's root is shared read-only at /host; host-built
# programs run in place because the loaders, the libraries and the build tree are linked
# in from there. Each step leaves its output and its status in the writable share at
# /results, which the runner on the host reads after power-off.
/bin/busybox --install -s /bin
export PATH=/bin

# Loads the modules listed in $1, each after those it needs; the last one, the module
# that was asked for, gets the remaining arguments.
load() {
    list=$1
    shift
    last=$(tail -n 1 "$list")
    for module in $(cat "$list"); do
        if [ "$module" = "$last" ]; then insmod "/modules/$module" "$@"
        else insmod "/modules/$module"; fi || echo "cannot load $module"
    done
}

# Runs a step as "$1": its output in /results/$1.log, its exit status in $1.status.
step() {
    name=$1
    shift
    "$@" > "/results/$name.log" 2>&1
    echo $? > "/results/$name.status"
}

mount_filesystems() {
    mkdir -p /proc /sys /dev /tmp /host /results /etc /usr/share/fonts/vantor
    mount -t proc proc /proc
    mount -t sysfs sys /sys
    mount -t devtmpfs dev /dev
    load /modules/base.order
    mount -t 9p -o trans=virtio,version=9p2000.L,ro hostroot /host
    mount -t 9p -o trans=virtio,version=9p2000.L results /results
}

# Where the host's files appear for the programs: set up after /results/config is read.
link_host() {
    for dir in lib lib64 usr/lib usr/bin usr/i686-linux-gnu; do ln -s "/host/$dir" "/$dir"; done
    ln -s /host/etc/ld.so.cache /etc/ld.so.cache
    mkdir -p "${BUILD%/*}" && ln -s "/host$BUILD" "$BUILD"
    cp "$FONTS/lr.tf" "$FONTS/lb.tf" /usr/share/fonts/vantor/
}

# vfb at 800x480x32 as fb0 (the "M" makes it compute the timings, without it the mode
# falls back to 640x480); with BOCHS=1 the emulated display as fb1. The console lets go
# of both, or its cursor would draw over what the tests read back.
start_framebuffers() {
    load /modules/vfb.order vfb_enable=1 videomemorysize=1536000 mode_option=800x480M-32
    [ "$BOCHS" = 1 ] && load /modules/bochs.order
    for console in /sys/class/vtconsole/vtcon*/bind; do echo 0 > "$console"; done
    echo 0 > /sys/class/graphics/fbcon/cursor_blink 2> /dev/null
    for fb in /sys/class/graphics/fb[0-9]*; do
        echo "${fb##*/} $(cat "$fb/name") $(cat "$fb/virtual_size") $(cat "$fb/bits_per_pixel")"
    done > /results/framebuffers
}

# The fixed screen on device $1, read back by cat and by fbcat under the name $2, with
# the layout the driver declares ($2.layout) to decode the raw memory by.
read_screen() {
    step "screen-$2" "$SCREEN" "$1"
    tail -n 1 "/results/screen-$2.log" > "/results/$2.layout"
    cat "$1" > "/results/$2.raw"
    /host/usr/bin/fbcat "$1" > "/results/$2.ppm" 2> "/results/fbcat-$2.log"
}

# QEMU's own picture of what the emulated display shows, $1.ppm, taken by the runner on
# the host through QEMU's monitor when asked.
screendump() {
    sleep 1  # the DRM layer copies written pages to the display after a short delay
    touch "/results/screendump-wanted-$1"
    for tick in $(seq 100); do
        [ -f "/results/screendump-done-$1" ] && return 0
        usleep 100000
    done
    echo "no screendump $1 within 10 s" >> /results/screendump-missing
}

# The bochs display as fb1, read back by cat and fbcat, and as QEMU shows it: first as
# the library leaves it (no console took fb1 over, so nobody set its mode), then after
# the mode is set the way the console would.
read_bochs() {
    step framebuffer-bochs env VANTOR_SYSTEM_FB=/dev/fb1 "$PROGRAM" --gtest_filter='RealFramebuffer.*'
    read_screen /dev/fb1 bochs
    screendump bochs-drawn
    step show-bochs "$SHOW" /dev/fb1
    screendump bochs-shown
}

# vfb again at another depth ($1 bits per pixel). fb0 is free once the first vfb is
# gone, so the new one takes its number.
reload_vfb() {
    rmmod vfb
    insmod /modules/vfb.ko vfb_enable=1 videomemorysize=1536000 "mode_option=800x480M-$1"
}

mount_filesystems
started=$(cut -d' ' -f1 /proc/uptime)
. /results/config
link_host
# Each run of the program sees the machine in one state: no framebuffer yet; the
# framebuffers but no input device yet; a keypad that goes away; everything; a 16-bit
# framebuffer (drawn and read back, 64-bit boot only); a palette framebuffer (refused).
step without-framebuffer "$PROGRAM" --gtest_filter='NoFramebuffer.*'
start_framebuffers
step without-keypad "$PROGRAM" --gtest_filter='NoKeypad.*'
step removed-keypad "$PROGRAM" --gtest_filter='RemovedKeypad.*'
step scenarios "$PROGRAM" --gtest_filter='-NoFramebuffer.*:NoKeypad.*:RemovedKeypad.*:PaletteFramebuffer.*'
if [ -n "$SCREEN" ]; then
    read_screen /dev/fb0 vfb
    [ "$BOCHS" = 1 ] && read_bochs
fi
reload_vfb 16
[ -n "$SCREEN" ] && read_screen /dev/fb0 vfb16
reload_vfb 8
step palette-framebuffer "$PROGRAM" --gtest_filter='PaletteFramebuffer.*'
echo "kernel reached /init at $started s, done at $(cut -d' ' -f1 /proc/uptime) s" > /results/uptime
sync
poweroff -f
