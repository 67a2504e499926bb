#!/usr/bin/env bash
# Boots Debian's own kernel in QEMU and runs the system scenarios inside it against real
# drivers: vfb and the bochs display for the screen, uinput for the keypad. It boots
# twice, once for the x86-64 programs and once for the same programs built for 32-bit
# x86, whose input records have the 16-byte layout of the 32-bit targets. Then the
# screen read from the devices (cat, fbcat, QEMU's own picture of the display) must
# equal the simulator's for the same program.
#   run-system-tests.sh BUILD_DIR SOURCE_DIR
# Needs the packages of scripts/system-deps.sh; fails, never skips, without them.
set -euo pipefail
build=$(cd "$1" && pwd)
source_dir=$(cd "$2" && pwd)
here=$(cd "$(dirname "$0")" && pwd)
work="$build/system"
cache="${VANTOR_KERNEL_CACHE:-/var/cache/vantor-system}"
source "$here/kernel.sh"
source "$here/machine.sh"

fail() {
  echo "system tests: $*" >&2
  exit 1
}

require_tools() {
  local tool
  for tool in qemu-system-x86_64 busybox modinfo xz fbcat i686-linux-gnu-g++ apt-get; do
    command -v "$tool" > /dev/null || fail "$tool is missing: run scripts/system-deps.sh"
  done
  # The initramfs has no libraries for a dynamically linked busybox.
  readelf -l "$(command -v busybox)" | grep -q INTERP &&
    fail "busybox is dynamically linked: install busybox-static"
  return 0
}

# The scenario programs and the demo for 32-bit x86. They are linked to run in place on
# this machine: the loader and rpath point at Debian's i686 cross libraries.
build_32bit() {
  local log="$work/i686.log" libs=/usr/i686-linux-gnu/lib
  cmake -S "$source_dir" -B "$build/i686" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_TOOLCHAIN_FILE="$source_dir/cmake/toolchains/i686-linux-gnu.cmake" \
    -DCMAKE_EXE_LINKER_FLAGS="-Wl,--dynamic-linker=$libs/ld-linux.so.2 -Wl,--disable-new-dtags -Wl,-rpath,$libs" \
    -DVANTOR_BUILD_DESK_TOOLS=OFF -DVANTOR_BUILD_FONTS=OFF -DVANTOR_BUILD_BENCH=OFF > "$log" 2>&1 ||
    { tail -30 "$log"; fail "cannot configure the 32-bit build"; }
  [ -f "$build/i686/tests/system/Makefile" ] ||
    fail "the 32-bit build has no tests/system: tests/CMakeLists.txt must add it to cross builds"
  cmake --build "$build/i686" -j 2 --target vantor_system_scenarios >> "$log" 2>&1 ||
    { tail -30 "$log"; fail "the 32-bit build failed"; }
}

# Prints a step's output; a step fails unless the guest recorded status 0 for it and,
# for a run of the scenarios, its filter selected at least one test.
failed=()
check_step() {
  local results=$1 name=$2 status
  echo "== $name (${results##*/})"
  cat "$results/$name.log" 2> /dev/null || true
  status=$(cat "$results/$name.status" 2> /dev/null || echo "missing")
  if [ "$status" = 0 ]; then
    case $name in screen-* | show-*) return 0 ;; esac
    grep -q '^\[  PASSED  \] [1-9]' "$results/$name.log" && return 0
    status="no test selected"
  fi
  echo "console:" && tail -20 "$results/console.log"
  failed+=("$name in ${results##*/} ($status)")
}

# The reference picture of the fixed screen on a panel of layout $1. Today the simulator
# draws it; anything that writes a PNG of the program's screen can stand in here.
reference_screen() {
  local shots="$work/reference-$1"
  rm -rf "$shots"
  "$build/tools/sim/vantor-sim" --screen 800x480 --format "$1" --fonts "$fonts" --shots "$shots" \
    --keys none -- "$build/tests/system/vantor_system_screen" /dev/fb0 > "$work/reference.log" 2>&1 ||
    { cat "$work/reference.log"; fail "the simulator could not draw the reference"; }
  ls "$shots"/*.png | tail -1
}

# Each device's memory, decoded by the layout its driver declares, must equal the
# simulator's picture of a panel of that layout; so must fbcat's reading (it honours the
# declaration too) and what QEMU scans out of the bochs display, which no console took
# over: the library's own pan must make it show.
compare_screens() {
  local results=$1 compare="$build/tests/system/vantor_compare_screen"
  "$compare" "$(reference_screen xbgr8888)" device:"$results/vfb" ppm:"$results/vfb.ppm" ||
    fail "vfb (32 bits, red low) differs from the simulator's picture"
  "$compare" "$(reference_screen xrgb8888)" device:"$results/bochs" ppm:"$results/bochs.ppm" \
    ppm:"$results/bochs-drawn.ppm" ppm:"$results/bochs-shown.ppm" ||
    fail "bochs differs from the simulator's picture"
  "$compare" "$(reference_screen bgr565)" device:"$results/vfb16" ppm:"$results/vfb16.ppm" ||
    fail "vfb at 16 bits differs from the simulator's picture"
}

mkdir -p "$work" "$cache"
require_tools
fetch_kernel "$cache"
fonts=$(font_dir "$build" "$work")
seconds=$SECONDS
build_32bit
echo "32-bit programs built in $((SECONDS - seconds)) s"
make_initramfs "$work/initramfs.gz"

boot 64 "$build/tests/system/vantor_system_scenarios" "$build/tests/system/vantor_system_screen"
boot 32 "$build/i686/tests/system/vantor_system_scenarios" ""
for width in 64 32; do
  for name in without-framebuffer without-keypad removed-keypad scenarios palette-framebuffer; do
    check_step "$work/results-$width" "$name"
  done
done
for name in framebuffer-bochs screen-vfb screen-bochs show-bochs screen-vfb16; do
  check_step "$work/results-64" "$name"
done
[ ${#failed[@]} -eq 0 ] || fail "failed: ${failed[*]}"
[ ! -f "$work/results-64/screendump-missing" ] || fail "$(cat "$work/results-64/screendump-missing")"
compare_screens "$work/results-64"
