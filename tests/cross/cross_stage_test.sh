#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the library for 32-bit and 64-bit ARM with the toolchain files, stages the
# install with DESTDIR under /usr, and checks the staged root as a board's build system
# uses it: a library for the right machine, and a pkg-config file that lets the target's
# compiler build the README's example against the staged root alone.
#   cross_stage_test.sh SOURCE_DIR WORK_DIR
set -euo pipefail
source_dir=$1
work=$2

fail() {
  echo "cross build $triple: $*" >&2
  exit 1
}

for target in "arm-linux-gnueabihf:ARM:32-bit.*ARM" "aarch64-linux-gnu:AArch64:64-bit.*aarch64"; do
  IFS=: read -r triple machine word <<< "$target"
  build=$work/$triple stage=$work/$triple-root
  command -v "$triple-gcc" > /dev/null || fail "no $triple-gcc: run scripts/system-deps.sh"
  rm -rf "$build" "$stage"
  cmake -S "$source_dir" -B "$build" -DCMAKE_TOOLCHAIN_FILE="$source_dir/cmake/toolchains/$triple.cmake" \
    -DCMAKE_INSTALL_PREFIX=/usr -DVANTOR_BUILD_TESTS=OFF -DVANTOR_BUILD_TOOLS=OFF > "$build.log" 2>&1 &&
    cmake --build "$build" -j 2 >> "$build.log" 2>&1 &&
    DESTDIR="$stage" cmake --install "$build" >> "$build.log" 2>&1 ||
    { tail -30 "$build.log"; fail "build or install failed"; }

  # A cross build is not multiarch: the library lands in usr/lib.
  lib=$stage/usr/lib/libvantor.so
  readelf -h "$lib" | grep -q "Machine: *$machine" || fail "$lib is not for $machine"
  "$source_dir/tests/install/readme-example.sh" "$source_dir/README.md" > "$work/example.c"
  flags=$(PKG_CONFIG_SYSROOT_DIR=$stage PKG_CONFIG_LIBDIR=$stage/usr/lib/pkgconfig pkg-config --cflags --libs vantor)
  # shellcheck disable=SC2086
  "$triple-gcc" -std=c99 -Wall -Wextra -Werror "$work/example.c" -o "$work/example" $flags
  file "$work/example" | grep -q "$word" || fail "the example is not a $word program"
  echo "$triple: library and pkg-config file staged for $machine"
done
