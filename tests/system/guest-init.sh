#!/bin/busybox sh
# /init of the test machine. The host's root is shared read-only at /host; host-built
# programs run in place because the loader, the libraries and the build tree are linked
# in from there. Results go to the writable share at /results.
/bin/busybox --install -s /bin
export PATH=/bin
mkdir -p /proc /sys /dev /tmp /host /results /etc /usr/share/fonts/vantor
mount -t proc proc /proc
mount -t sysfs sys /sys
mount -t devtmpfs dev /dev
for module in $(cat /modules/order); do insmod "/modules/$module" || echo "cannot load $module"; done
mount -t 9p -o trans=virtio,version=9p2000.L,ro hostroot /host
mount -t 9p -o trans=virtio,version=9p2000.L results /results
. /results/config
for dir in lib lib64 usr/lib usr/bin; do ln -s "/host/$dir" "/$dir"; done
ln -s /host/etc/ld.so.cache /etc/ld.so.cache
mkdir -p "${BUILD%/*}" && ln -s "/host$BUILD" "$BUILD"
cp "$FONTS/lr.tf" "$FONTS/lb.tf" /usr/share/fonts/vantor/

# An 800x480 screen at 32 bits per pixel; the console lets go of it so no cursor blinks.
insmod /modules/vfb.ko vfb_enable=1 videomemorysize=1536000 mode_option=800x480M-32
for console in /sys/class/vtconsole/vtcon*/bind; do echo 0 > "$console"; done
echo 0 > /sys/class/graphics/fbcon/cursor_blink 2>/dev/null

cat /sys/class/graphics/fb0/virtual_size > /results/fb-size 2>&1
if [ "$MODE" = 32 ]; then
    # The 32-bit programs, through the 32-bit loader (the demo they would start is
    # 64-bit, so that scenario stays with the 64-bit run).
    "/host$LOADER32/ld-linux.so.2" --library-path "/host$LOADER32" "$SCENARIOS32" \
        --gtest_filter=-*Demo* > /results/scenarios32.log 2>&1
    echo $? > /results/scenarios32.status
else
    "$SCENARIOS" --gtest_output=xml:/results/scenarios.xml > /results/scenarios.log 2>&1
    echo $? > /results/scenarios.status
    "$SCREEN" /dev/fb0 > /results/screen.log 2>&1
    cat /dev/fb0 > /results/screen.raw
    /host/usr/bin/fbcat /dev/fb0 > /results/screen.ppm 2>/results/fbcat.log
fi
sync
poweroff -f
