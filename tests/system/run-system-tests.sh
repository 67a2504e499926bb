#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Boots Debian's own kernel in QEMU and runs the system scenarios inside it against real
# drivers: vfb and the bochs display for the screen, uinput for the keypad. It boots
# twice, once for the x86-64 programs and once for the same programs built for 32-bit
# x86, whose input records have the 16-byte layout of the 32-bit targets. The first boot
# also interrupts vantor copies on a vfat and an ext4 disk. Then the
# screens read from the devices, and QEMU's own picture of the bochs display, must equal
# the simulator's picture of the same program.
#   run-system-tests.sh BUILD_DIR SOURCE_DIR
# Needs the packages of scripts/system-deps.sh; fails, never skips, without them.
set -euo pipefail
build=$(cd "$1" && pwd)
source_dir=$(cd "$2" && pwd)
here=$(cd "$(dirname "$0")" && pwd)
work="$build/system"
fonts="$build/fonts"
source "$here/kernel.sh"

fail() {
  echo "system tests: $*" >&2
  exit 1
}

# The scenario programs for 32-bit x86, linked to run in place on this machine: the
# loader and rpath point at Debian's i686 cross libraries.
build_32bit() {
  local libs=/usr/i686-linux-gnu/lib
  cmake -S "$source_dir" -B "$build/i686" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_TOOLCHAIN_FILE="$source_dir/cmake/toolchains/i686-linux-gnu.cmake" \
    -DCMAKE_EXE_LINKER_FLAGS="-Wl,--dynamic-linker=$libs/ld-linux.so.2 -Wl,--disable-new-dtags -Wl,-rpath,$libs" \
    -DVANTOR_BUILD_DESK_TOOLS=OFF -DVANTOR_BUILD_FONTS=OFF -DVANTOR_BUILD_BENCH=OFF > "$work/i686.log" 2>&1 &&
    cmake --build "$build/i686" -j 2 --target vantor_system_scenarios >> "$work/i686.log" 2>&1 ||
    { tail -30 "$work/i686.log"; fail "the 32-bit build failed"; }
}

# busybox as /init's shell, /init itself, and the modules with lists in loading order:
# the shares and input (base), vfb, the bochs display with the DRM layer under it, and
# virtio-gpu.
make_initramfs() {
  local root="$work/initramfs" list module
  rm -rf "$root" && mkdir -p "$root/bin" "$root/modules"
  cp "$(command -v busybox)" "$root/bin/busybox"
  cp "$here/guest-init.sh" "$root/init"
  cp "$here/copy-scenarios.sh" "$root/copy-scenarios.sh"
  for list in "base:virtio_pci 9pnet_virtio 9p evdev uinput" "vfb:vfb" "bochs:bochs" \
    "virtio-gpu:virtio-gpu" "disks:virtio_blk nls_cp437 nls_ascii vfat crc32c_generic ext4"; do
    MODULES_SEEN=""
    : > "$root/modules/${list%%:*}.order"
    # shellcheck disable=SC2086 # a list of module names
    for module in $(modules_in_order "$KERNEL_MODULES" ${list#*:}); do
      cp "$module" "$root/modules/"
      basename "$module" >> "$root/modules/${list%%:*}.order"
    done
  done
  (cd "$root" && find . | busybox cpio -o -H newc 2> /dev/null | gzip -1 > "$work/initramfs.gz")
}

# The copy scenarios' disks, fresh for every run: vfat (no unnamed temporary files)
# and ext4 (unnamed ones), seen by the guest as vda and vdb.
make_disks() {
  rm -f "$work/vfat.img" "$work/ext4.img"
  truncate -s 160M "$work/vfat.img" "$work/ext4.img"
  mkfs.vfat -n VANTOR "$work/vfat.img" > /dev/null
  mkfs.ext4 -q -F "$work/ext4.img"
}

# Takes QEMU's picture of a display each time the guest asks: the request names the
# picture (default scanout.ppm) and QEMU's device (default the first display). A picture
# that does not come within 10 s is left to the comparison to miss.
serve_screendump() {
  local results=$1 monitor=$2 name device tick
  while :; do
    until [ -f "$results/screendump-wanted" ]; do sleep 0.1; done
    read -r name device < "$results/screendump-wanted" || true
    rm -f "$results/screendump-wanted"
    name="$results/${name:-scanout}.ppm"
    echo "screendump $name $device" > "$monitor.in"
    for tick in $(seq 100); do
      [ "$(stat -c %s "$name" 2> /dev/null || echo 0)" -ge $((15 + 800 * 480 * 3)) ] && break
      sleep 0.1
    done
    touch "$results/screendump-done"
  done
}

# One boot: $1 names it (64, 32 or drm), $2 is the scenario program, $3 the screen
# program (empty: no screen readings), $4 the vantor command whose copies are
# interrupted (empty: none). Results land in results-$1. The drm boot has a virtio-gpu
# display too, first so that it is QEMU's default one, and tells the guest.
boot() {
  local results="$work/results-$1" monitor="$work/monitor-$1" status=0 server displays=()
  rm -rf "$results" "$monitor".* && mkdir -p "$results" && mkfifo "$monitor.in" "$monitor.out"
  printf 'BUILD=%s\nFONTS=%s\nPROGRAM=%s\nSCREEN=%s\nCOPIER=%s\n' "$build" "$fonts" "$2" "$3" \
    "${4:-}" > "$results/config"
  if [ "$1" = drm ]; then
    echo "DRM=1" >> "$results/config"
    displays=(-device virtio-gpu-pci,xres=800,yres=480)
  fi
  serve_screendump "$results" "$monitor" &
  local server=$!
  timeout 300 qemu-system-x86_64 -nodefaults -machine pc,i8042=off -accel tcg -m 768 -smp 1 \
    -kernel "$KERNEL_IMAGE" -initrd "$work/initramfs.gz" \
    -append "console=ttyS0 quiet panic=-1 rdinit=/init vt.global_cursor_default=0" \
    -virtfs local,path=/,mount_tag=hostroot,security_model=none,readonly=on,multidevs=remap \
    -virtfs local,path="$results",mount_tag=results,security_model=none,multidevs=remap \
    -chardev pipe,id=monitor,path="$monitor" -mon chardev=monitor,mode=readline \
    "${displays[@]}" -device bochs-display,id=bochs,xres=800,yres=480 \
    -serial file:"$results/console.log" \
    -drive file="$work/vfat.img",format=raw,if=virtio \
    -drive file="$work/ext4.img",format=raw,if=virtio \
    -display none -no-reboot || status=$?
  kill "$server" 2> /dev/null || true
  echo "machine $1: QEMU status $status, $(cat "$results/uptime" 2> /dev/null || echo "no uptime")"
  [ "$status" = 0 ] || { tail -40 "$results/console.log"; fail "the $1-bit machine failed"; }
}

# Every step must have ended with status 0, and every run of the scenarios must have run
# some test; the guest writes "uptime" last, so without it the guest stopped early.
check_boot() {
  local results=$1 status log
  [ -f "$results/uptime" ] || failed+=("the guest of ${results##*/} stopped early")
  for status in "$results"/*.status; do
    log=${status%.status}.log
    echo "== ${log##*/}"
    cat "$log" 2> /dev/null || true
    if [ "$(cat "$status")" != 0 ] || grep -q '^\[  PASSED  \] 0 tests' "$log"; then
      failed+=("${log##*/} in ${results##*/}")
    fi
  done
}

# Each reading (a PPM: a header, then 800x480 pixels) must equal, pixel for pixel, the
# simulator's picture of the same program on a panel of layout $1, or on its DRM card
# when $1 is drm, turned by $turned degrees if that is set. With menu set the program
# ends with a menu, and the picture is the simulator's while the menu waits for its key.
# A black reference would prove nothing.
compare_screens() {
  local degrees=${turned:-0} picture=800x480 keys=none shot='$' words=()
  [ -n "${menu:-}" ] && keys=ok shot=1 words=(menu)
  local shots="$work/reference-$1-$degrees" size=$((800 * 480 * 3)) reading differ
  local panel=(--format "$1") device=/dev/fb0
  [ "$1" = drm ] && panel=(--drm) && device=/dev/dri/card0
  [ $((degrees % 180)) = 0 ] || picture=480x800  # the simulator's panel is then 800x480
  rm -rf "$shots"
  "$build/tools/sim/vantor-sim" --screen $picture --rotate "$degrees" "${panel[@]}" \
    --fonts "$fonts" --shots "$shots" --keys "$keys" -- \
    "$build/tests/system/vantor_system_screen" "$device" "turn=$degrees" "${words[@]}" \
    > "$shots.log" 2>&1 ||
    { cat "$shots.log"; fail "the simulator could not draw the reference"; }
  pngtopnm "$(ls "$shots"/*.png | sed -n "${shot}p")" | tail -c $size > "$shots.rgb"
  [ "$(tr -d '\0' < "$shots.rgb" | wc -c)" -gt 10000 ] || fail "the $1 reference is black"
  for reading in "${@:2}"; do
    differ=$( (cmp -l "$shots.rgb" <(tail -c $size "$reading") || true) | wc -l)
    echo "${reading##*/}: $differ bytes differ from the simulator's $1 picture"
    [ "$differ" = 0 ] && [ "$(stat -c %s "$reading")" -gt $size ] || failed+=("${reading##*/}")
  done
}

for tool in qemu-system-x86_64 busybox modinfo xz fbcat pngtopnm i686-linux-gnu-g++ apt-get \
  mkfs.vfat mkfs.ext4; do
  command -v "$tool" > /dev/null || fail "$tool is missing: run scripts/system-deps.sh"
done
readelf -l "$(command -v busybox)" | grep -q INTERP && fail "busybox is dynamic: install busybox-static"
[ -f "$fonts/lr.tf" ] && [ -f "$fonts/lb.tf" ] || fail "no fonts in $fonts: build vantor_fonts"
mkdir -p "$work"
fetch_kernel "${VANTOR_KERNEL_CACHE:-/var/cache/vantor-system}"
build_32bit
make_initramfs
make_disks
boot 64 "$build/tests/system/vantor_system_scenarios" "$build/tests/system/vantor_system_screen" \
  "$build/tools/vantor/vantor"
boot 32 "$build/i686/tests/system/vantor_system_scenarios" ""
boot drm "$build/tests/system/vantor_system_scenarios" "$build/tests/system/vantor_system_screen"
failed=()
check_boot "$work/results-64"
check_boot "$work/results-32"
check_boot "$work/results-drm"
[ ${#failed[@]} -eq 0 ] || fail "failed: ${failed[*]}"

# What fbcat read from each device, decoded by the layout its driver declares, and what
# QEMU scans out of the bochs display.
results="$work/results-64"
compare_screens xbgr8888 "$results/vfb.ppm"
compare_screens xrgb8888 "$results/bochs.ppm" "$results/scanout.ppm"
compare_screens bgr565 "$results/vfb16.ppm"
menu=1 compare_screens bgr565 "$results/vfb16-console-1.ppm" "$results/vfb16-console-2.ppm"
turned=90 compare_screens xbgr8888 "$results/vfb-90.ppm"
turned=270 compare_screens xbgr8888 "$results/vfb-270.ppm"
cmp -s "$results/script-1.ppm" "$results/script-2.ppm" || failed+=("console between commands")
cmp -s "$results/script-2.ppm" "$results/script-3.ppm" && failed+=("console not given back")
# The DRM cards while the program holds them: bochs without and with fbdev emulation, and
# virtio-gpu, which shows only the rectangles DIRTYFB named. After the program the console
# is back on bochs exactly as before it.
results="$work/results-drm"
compare_screens drm "$results/bochs-drm.ppm" "$results/bochs-console.ppm" "$results/virtio.ppm"
if cmp -s "$results/console-before.ppm" "$results/console-after.ppm" &&
  ! cmp -s "$results/console-before.ppm" "$results/bochs-console.ppm"; then
  echo "console-after.ppm: the console is back as it was"
else
  failed+=("console-after.ppm")
fi
[ ${#failed[@]} -eq 0 ] || fail "screens differ from the simulator's: ${failed[*]}"
