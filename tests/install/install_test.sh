#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the built tree into a staging directory and builds a C host program against
# it twice: through pkg-config and through CMake's find_package. Also checks that the
# dynamic symbol table holds only the C calls and the Vantor namespace, and that the
# default fonts are installed.
set -euo pipefail
build_dir=$1
source_dir=$2
host_flags=${3:-}
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT

DESTDIR="$stage" cmake --install "$build_dir" --prefix /opt/vantor > /dev/null
root="$stage/opt/vantor"
lib=$(dirname "$(find "$root" -name libvantor.so -print -quit)")

readelf -d "$lib/libvantor.so" | grep -q 'SONAME.*\[libvantor.so.1\]' || {
  echo "SONAME is not libvantor.so.1"; exit 1; }

stray=$(nm -D --defined-only "$lib/libvantor.so" | awk '{print $3}' | c++filt |
  grep -v -E '^(InitFramebuffer|InitCanvas|Update|Restore|Clear|WriteText|WriteInvText|WriteTextWithBackground|WriteAlignedTextWithBackground|getScreenSize|getFontSize|RGB_to_RGBA|setTextEncoding|InitKeypad|WaitKey|InitDialog|ShowDialog|HideDialog|InitMenu|InitMenuBox|ShowMenu|getMenuSize|InitProgress|ShowProgress|UpdateProgress|HideProgress|CopyFileWithProgress|CopyFileWithProgressEx|setKeyDevices|setKeyCode|resetKeyCodes|CancelCopy|setRotation|setConsoleGraphics)$' |
  grep -v -E '^((vtable|typeinfo|typeinfo name) for |(non-)?virtual thunk to )?Vantor::' || true)
if [ -n "$stray" ]; then
  echo "Unexpected exported symbols:"; echo "$stray"; exit 1
fi

export PKG_CONFIG_PATH="$lib/pkgconfig"
# shellcheck disable=SC2046,SC2086
cc -std=c99 -Wall -Wextra -Werror $host_flags $(pkg-config --cflags vantor) \
  "$source_dir/host/host.c" -o "$stage/host-pc" $(pkg-config --libs vantor)
LD_LIBRARY_PATH="$lib" "$stage/host-pc" | tee "$stage/out-pc"

cmake -S "$source_dir/host" -B "$stage/host-build" -DCMAKE_PREFIX_PATH="$root" \
  -DCMAKE_C_FLAGS="-std=c99 -Wall -Wextra -Werror $host_flags" > /dev/null
cmake --build "$stage/host-build" > /dev/null
LD_LIBRARY_PATH="$lib" "$stage/host-build/host" | tee "$stage/out-cmake"

for font in lr.tf lb.tf; do
  [ -s "$root/share/fonts/vantor/$font" ] || { echo "share/fonts/vantor/$font not installed"; exit 1; }
done

grep -qx '8 33221100 -2 2 18' "$stage/out-pc"
cmp "$stage/out-pc" "$stage/out-cmake"
echo "installed package builds C hosts through pkg-config and CMake"
