#!/bin/busybox sh
# SPDX-License-Identifier: MIT
# /init of the test machine. The host's root is shared read-only at /host; host-built
# programs run in place because the loaders, the libraries and the build tree are linked
# in from there. Each step leaves its output and its status in the writable share at
# /results, which the runner on the host reads after power-off.
/bin/busybox --install -s /bin
export PATH=/bin

# Loads the modules listed in $1 in order; the last one, the module that was asked for,
# gets the remaining arguments.
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

# The fixed screen drawn on device $1 and read back as $2.ppm by fbcat, which decodes the
# memory by the layout the driver declares; $3, if given, turns it by that many degrees.
read_screen() {
    step "screen-$2" "$SCREEN" "$1" ${3:+turn=$3}
    /host/usr/bin/fbcat "$1" > "/results/$2.ppm"
}

# QEMU's own picture of a display, which the runner takes when asked: $1.ppm of QEMU's
# device $2 (by default scanout.ppm of the first display). In the fbdev boots no console
# took the bochs display over, so only the library's own pan can have made it show.
screendump() {
    sleep 1  # the DRM layer copies written pages to the display after a short delay
    rm -f /results/screendump-done
    # Written aside and renamed, so the runner never reads a request half written.
    echo "${1:-} ${2:-}" > /results/screendump-request
    mv /results/screendump-request /results/screendump-wanted
    for tick in $(seq 100); do
        [ -f /results/screendump-done ] && return
        usleep 100000
    done
}

# Like load, but module $2 of list $1 gets the remaining arguments, and modules already
# loaded (by an earlier list) are left alone.
load_giving() {
    list=$1
    target=$2
    shift 2
    for module in $(cat "$list"); do
        name=$(echo "${module%.ko}" | tr - _)
        [ -d "/sys/module/$name" ] && continue
        if [ "${module%.ko}" = "$target" ]; then insmod "/modules/$module" "$@"
        else insmod "/modules/$module"; fi || echo "cannot load $module"
    done
}

# The fixed screen on DRM card $1, held while QEMU's device $3 is dumped as $2.ppm and
# the command $4 (if any) runs, given the card.
held_screen() {
    rm -f /tmp/release
    "$SCREEN" "$1" /tmp/release > "/results/screen-$2.log" 2>&1 &
    holder=$!
    for tick in $(seq 300); do
        grep -q held "/results/screen-$2.log" && break
        usleep 100000
    done
    screendump "$2" "$3"
    [ -z "${4:-}" ] || "$4" "$1"
    touch /tmp/release
    wait "$holder"
    echo $? > "/results/screen-$2.status"
}

# A second program on the card while the first holds it: refused with the line, at once.
second_opener() {
    timeout 30 "$SCREEN" "$1" > /results/second-opener.log 2>&1
    refused=$?
    grep -q "another program owns the display" /results/second-opener.log && [ "$refused" = 1 ]
    echo $? > /results/second-opener.status
}

# The card opened here too, so closing the program's descriptor is not the last close,
# at which the kernel would put its console back by itself.
keep_card_open() {
    exec 3< "$1"
}

# The DRM boot. bochs first without fbdev emulation: no /dev/fb0 at all, and the demo
# and the installer find the card. Then bochs with the console on it, which must come
# back after the program; then virtio-gpu, which shows only what it is told changed.
drm_steps() {
    load_giving /modules/bochs.order drm_kms_helper fbdev_emulation=0
    step no-fbdev sh -c '! ls /dev/fb* 2> /dev/null && ls /dev/dri/card0'
    step programs "$PROGRAM" --gtest_filter='RealDevices.*'
    held_screen /dev/dri/card0 bochs-drm bochs second_opener
    rmmod bochs
    echo Y > /sys/module/drm_kms_helper/parameters/fbdev_emulation
    insmod /modules/bochs.ko
    printf '\033[2J\033[HThe console of the DRM boot\n' > /dev/tty1
    screendump console-before bochs
    held_screen /dev/dri/card0 bochs-console bochs keep_card_open
    screendump console-after bochs
    exec 3<&-
    echo N > /sys/module/drm_kms_helper/parameters/fbdev_emulation
    load_giving /modules/virtio-gpu.order none
    held_screen /dev/dri/card1 virtio
}

mkdir -p /proc /sys /dev /tmp /host /results /etc /usr/share/fonts/vantor
mount -t proc proc /proc
mount -t sysfs sys /sys
mount -t devtmpfs dev /dev
started=$(cut -d' ' -f1 /proc/uptime)
load /modules/base.order
mount -t 9p -o trans=virtio,version=9p2000.L,ro hostroot /host
mount -t 9p -o trans=virtio,version=9p2000.L results /results
. /results/config
for dir in lib lib64 usr/lib usr/bin usr/i686-linux-gnu; do ln -s "/host/$dir" "/$dir"; done
ln -s /host/etc/ld.so.cache /etc/ld.so.cache
mkdir -p "${BUILD%/*}" && ln -s "/host$BUILD" "$BUILD"
cp "$FONTS/lr.tf" "$FONTS/lb.tf" /usr/share/fonts/vantor/

# vfb at 800x480x32 as fb0 (the "M" makes it compute the timings, without it the mode
# falls back to 640x480), the bochs display as fb1. The console lets go of both, or its
# cursor would draw over what is read back.
# The runner reads "uptime" last: without it the guest stopped early.
power_off() {
    echo "kernel reached /init at $started s, done at $(cut -d' ' -f1 /proc/uptime) s" > /results/uptime
    sync
    poweroff -f
}

[ -n "${DRM:-}" ] && { drm_steps; power_off; }
load /modules/vfb.order vfb_enable=1 videomemorysize=1536000 mode_option=800x480M-32
load /modules/bochs.order
for console in /sys/class/vtconsole/vtcon*/bind; do echo 0 > "$console"; done
echo 0 > /sys/class/graphics/fbcon/cursor_blink
# A keypad that goes away must be the only one in its run; the programs run after it.
step removed-keypad "$PROGRAM" --gtest_filter='RemovedKeypad.*'
step programs "$PROGRAM" --gtest_filter='RealDevices.*'
step console "$PROGRAM" --gtest_filter='RealConsole.*'
# Last, so that its two devices do not move the programs' input numbers.
step buttons-and-keypad "$PROGRAM" --gtest_filter='ButtonsAndKeypad.*'
# Copies interrupted by signals on the two disks: vfat keeps one temporary file at most,
# ext4 none at all; the display is left alone (no /dev/fb9).
if [ -n "$COPIER" ]; then
    load /modules/disks.order
    mkdir -p /mnt/vfat /mnt/ext4
    # A disk that does not mount fails its step, rather than the copies running on the
    # initramfs (ext4 needs crc32c_generic for that, loaded with the disks' modules).
    step copy-vfat sh -c "mount -t vfat /dev/vda /mnt/vfat &&
        sh /copy-scenarios.sh '$COPIER' /mnt/vfat named"
    step copy-ext4 sh -c "mount -t ext4 /dev/vdb /mnt/ext4 &&
        sh /copy-scenarios.sh '$COPIER' /mnt/ext4 unnamed"
    umount /mnt/vfat /mnt/ext4
fi
if [ -n "$SCREEN" ]; then
    read_screen /dev/fb0 vfb
    read_screen /dev/fb0 vfb-90 90
    read_screen /dev/fb0 vfb-270 270
    read_screen /dev/fb1 bochs
    screendump
    # vfb again at 16 bits per pixel: fb0 is free once the first one is gone.
    rmmod vfb
    insmod /modules/vfb.ko vfb_enable=1 videomemorysize=1536000 mode_option=800x480M-16
    read_screen /dev/fb0 vfb16
    # The console on vfb again, writing while a menu waits with the console kept off:
    # two readings a second apart must both be the program's screen with its menu.
    for console in /sys/class/vtconsole/vtcon*; do
        grep -q "frame buffer" "$console/name" && echo 1 > "$console/bind"
    done
    step console-menu "$PROGRAM" --gtest_filter='ConsoleOnTheFramebuffer.*'
    # A script keeps the console off between its commands and gives it back at its end:
    # the first two readings are equal, the console's repaint makes the third differ.
    cli="$BUILD/tools/vantor/vantor"
    "$cli" console off && "$cli" text --at 10,10 "A script" > /results/script.log 2>&1
    /host/usr/bin/fbcat /dev/fb0 > /results/script-1.ppm
    echo "between two commands" > /dev/tty1
    /host/usr/bin/fbcat /dev/fb0 > /results/script-2.ppm
    "$cli" console on
    echo "after the script" > /dev/tty1
    /host/usr/bin/fbcat /dev/fb0 > /results/script-3.ppm
fi
power_off
