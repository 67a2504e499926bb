#!/usr/bin/env bash
# Builds the library for 32-bit and 64-bit ARM with the toolchain files, stages the
# install with DESTDIR under /usr, and checks the staged root as the target would use it:
# a library for the right machine, the default fonts, and pkg-config and CMake files that
# let the target's compiler build the README's example against the staged root.
#   cross_stage_test.sh SOURCE_DIR WORK_DIR
set -euo pipefail
source_dir=$1
work=$2

fail() {
  echo "cross build $triple: $*" >&2
  exit 1
}

stage_target() {
  local build=$work/$triple
  command -v "$triple-gcc" > /dev/null || fail "no $triple-gcc: run scripts/system-deps.sh"
  rm -rf "$build" "$stage"
  cmake -S "$source_dir" -B "$build" -DCMAKE_TOOLCHAIN_FILE="$source_dir/cmake/toolchains/$triple.cmake" \
    -DCMAKE_INSTALL_PREFIX=/usr -DVANTOR_BUILD_TESTS=OFF -DVANTOR_BUILD_TOOLS=OFF > "$build.log" 2>&1 &&
    cmake --build "$build" -j 2 >> "$build.log" 2>&1 &&
    DESTDIR="$stage" cmake --install "$build" >> "$build.log" 2>&1 ||
    { tail -30 "$build.log"; fail "build or install failed"; }
}

# Sets libdir: where the library landed (usr/lib: a cross build is not multiarch).
check_library() {
  local lib
  lib=$(find "$stage" -name 'libvantor.so.1.*' -print -quit)
  [ -n "$lib" ] || fail "no libvantor.so.1.* staged"
  libdir=$(dirname "$lib")
  readelf -h "$lib" | grep -q "Machine: *$machine" || fail "$lib is not for $machine"
  file -L "$libdir/libvantor.so" | grep -q "$word" || fail "$libdir/libvantor.so is not $word"
}

check_fonts() {
  local font
  for font in lr.tf lb.tf; do
    cmp "$source_dir/fonts/$font" "$stage/usr/share/fonts/vantor/$font" ||
      fail "usr/share/fonts/vantor/$font missing or different"
  done
}

# The example must build with the target's compiler from the staged files alone.
check_host_builds() {
  local pc_dir=$libdir/pkgconfig flags
  [ -f "$pc_dir/vantor.pc" ] || fail "no vantor.pc beside the library"
  "$source_dir/tests/install/readme-example.sh" "$source_dir/README.md" > "$work/example.c"
  flags=$(PKG_CONFIG_SYSROOT_DIR=$stage PKG_CONFIG_LIBDIR=$pc_dir pkg-config --cflags --libs vantor)
  # shellcheck disable=SC2086
  "$triple-gcc" -std=c99 -Wall -Wextra -Werror "$work/example.c" -o "$work/example-pc" $flags
  file "$work/example-pc" | grep -q "$word" || fail "pkg-config: the example is not a $word program"

  cmake -S "$source_dir/tests/install/host" -B "$work/host-$triple" \
    -DCMAKE_TOOLCHAIN_FILE="$source_dir/cmake/toolchains/$triple.cmake" \
    -DVantor_DIR="$libdir/cmake/Vantor" > /dev/null ||
    fail "find_package(Vantor) fails on the staged root"
  cmake --build "$work/host-$triple" > /dev/null || fail "the CMake host does not build"
  file "$work/host-$triple/host" | grep -q "$word" || fail "CMake: the host is not a $word program"
}

for target in "arm-linux-gnueabihf:ARM:32-bit.*ARM" "aarch64-linux-gnu:AArch64:64-bit.*aarch64"; do
  IFS=: read -r triple machine word <<< "$target"
  stage=$work/$triple-root
  stage_target
  check_library
  check_fonts
  check_host_builds
  echo "$triple: library, fonts, pkg-config and CMake files staged for $machine"
done
