#!/usr/bin/env bash
# Boots Debian's own kernel in QEMU and runs the system scenarios inside it against a
# real framebuffer driver (vfb) and a real input device (uinput), then compares the
# screen read from the real device with the simulator's for the same program.
# The scenarios run twice: built for x86-64, and built for 32-bit x86, whose input
# records have the 16-byte layout of the 32-bit targets.
#   run-system-tests.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
build=$(cd "$1" && pwd)
source_dir=$(cd "$2" && pwd)
here=$(cd "$(dirname "$0")" && pwd)
work="$build/system"
cache="${VANTOR_KERNEL_CACHE:-/var/cache/vantor-system}"
mkdir -p "$work" "$cache"

# --- the kernel: Debian's generic amd64 image, unpacked, never installed -------------
kernel_package() {
  apt-cache depends linux-image-amd64 2>/dev/null | awk '/Depends: linux-image-/ {print $2; exit}'
}
package=$(kernel_package)
if [ -z "$package" ]; then  # the package lists were never fetched on this machine
  for attempt in 1 2 3; do apt-get update -q > /dev/null && break; sleep 5; done
  package=$(kernel_package)
fi
[ -n "$package" ] || { echo "cannot tell which kernel linux-image-amd64 stands for"; exit 1; }
kernel_dir="$cache/$package"
if [ ! -f "$kernel_dir/done" ]; then
  rm -rf "$kernel_dir" && mkdir -p "$kernel_dir"
  (cd "$cache" && for attempt in 1 2 3; do apt-get download "$package" && break; sleep 5; done)
  dpkg-deb -x "$cache/${package}"_*.deb "$kernel_dir"
  touch "$kernel_dir/done"
fi
vmlinuz=$(ls "$kernel_dir"/boot/vmlinuz-*)
modules=$(ls -d "$kernel_dir"/lib/modules/*)/kernel

# --- the 32-bit build ----------------------------------------------------------------------
build32="$build/i686"
cmake -S "$source_dir" -B "$build32" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_TOOLCHAIN_FILE="$source_dir/cmake/toolchains/i686-linux-gnu.cmake" \
  -DVANTOR_BUILD_DESK_TOOLS=OFF -DVANTOR_BUILD_FONTS=OFF -DVANTOR_BUILD_BENCH=OFF > "$work/i686.log"
cmake --build "$build32" -j "$(nproc)" --target vantor_system_scenarios >> "$work/i686.log" 2>&1 ||
  { tail -30 "$work/i686.log"; exit 1; }

# --- the initramfs: busybox, the modules, our /init -------------------------------------
root="$work/initramfs"
rm -rf "$root" && mkdir -p "$root/bin" "$root/modules"
cp /bin/busybox "$root/bin/busybox"
cp "$here/guest-init.sh" "$root/init" && chmod +x "$root/init"
order=(drivers/virtio/virtio_ring.ko drivers/virtio/virtio.ko
       drivers/virtio/virtio_pci_modern_dev.ko drivers/virtio/virtio_pci_legacy_dev.ko
       drivers/virtio/virtio_pci.ko net/9p/9pnet.ko net/9p/9pnet_virtio.ko
       fs/netfs/netfs.ko fs/fscache/fscache.ko fs/9p/9p.ko
       drivers/input/evdev.ko drivers/input/misc/uinput.ko)
: > "$root/modules/order"
for module in "${order[@]}"; do
  cp "$modules/$module" "$root/modules/" && basename "$module" >> "$root/modules/order"
done
cp "$modules/drivers/video/fbdev/vfb.ko" "$root/modules/"
(cd "$root" && find . | busybox cpio -o -H newc 2>/dev/null | gzip -1 > "$work/initramfs.gz")

# --- run ----------------------------------------------------------------------------------
# One boot per width: input numbers are never reused within a boot while event numbers
# are, and the library pairs input N with event N, so each run starts from a fresh kernel.
results="$work/results"
rm -rf "$results" && mkdir -p "$results"
boot() {
  cat > "$results/config" <<CONFIG
MODE=$1
BUILD=$build
FONTS=$build/fonts
SCENARIOS=$build/tests/system/vantor_system_scenarios
SCREEN=$build/tests/system/vantor_system_screen
SCENARIOS32=$build32/tests/system/vantor_system_scenarios
LOADER32=/usr/i686-linux-gnu/lib
CONFIG
  local start
  start=$(date +%s)
  timeout 900 qemu-system-x86_64 -nodefaults -machine pc,i8042=off -accel tcg -m 768 -smp 1 \
    -kernel "$vmlinuz" -initrd "$work/initramfs.gz" \
    -append "console=ttyS0 quiet panic=-1 rdinit=/init vt.global_cursor_default=0" \
    -virtfs local,path=/,mount_tag=hostroot,security_model=none,readonly=on,multidevs=remap \
    -virtfs local,path="$results",mount_tag=results,security_model=none,multidevs=remap \
    -serial file:"$work/console-$1.log" -display none -no-reboot
  echo "virtual machine ($1-bit programs) ran $(( $(date +%s) - start )) s"
}

for width in 64 32; do
  boot $width
  run=scenarios$([ $width = 32 ] && echo 32 || true)
  echo "== $run"
  cat "$results/$run.log" 2>/dev/null || true
  status=$(cat "$results/$run.status" 2>/dev/null || echo missing)
  if [ "$status" != 0 ]; then
    echo "$run failed (status $status); console:"; tail -40 "$work/console-$width.log"
    exit 1
  fi
done

# --- the same screen in the simulator, compared byte for byte -----------------------
shots="$work/sim-shots"
rm -rf "$shots"
"$build/tools/sim/vantor-sim" --screen 800x480 --fonts "$build/fonts" --shots "$shots" \
  --keys none -- "$build/tests/system/vantor_system_screen" /dev/fb0
"$build/tests/system/vantor_compare_screen" "$results/screen.raw" "$results/screen.ppm" \
  "$(ls "$shots"/*.png | tail -1)" 800 480
