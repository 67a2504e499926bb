#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# A user's plain configure on a machine with only a compiler and CMake: every optional
# package is hidden from find_package. It must configure with the default build type,
# say in one line what it leaves out, build, and install the library, headers,
# pkg-config and CMake files and the default fonts.
#   bare_build_test.sh SOURCE_DIR WORK_DIR
set -euo pipefail
source_dir=$1
build=$2/bare
stage=$2/bare-root
rm -rf "$build" "$stage"

hidden=()
for package in GTest benchmark Freetype PNG ZLIB; do
  hidden+=("-DCMAKE_DISABLE_FIND_PACKAGE_$package=ON")
done
cmake -S "$source_dir" -B "$build" "${hidden[@]}" > "$build.log" 2>&1 ||
  { cat "$build.log"; echo "a bare configure fails"; exit 1; }
grep -q '^CMAKE_BUILD_TYPE:STRING=Release$' "$build/CMakeCache.txt" ||
  { echo "the default build type is not Release"; exit 1; }
notes=$(grep -c 'Vantor: building without' "$build.log" || true)
[ "$notes" = 1 ] || { cat "$build.log"; echo "expected one line naming what is left out"; exit 1; }
for part in tests benchmarks simulator "font converter"; do
  grep 'Vantor: building without' "$build.log" | grep -q "$part" ||
    { cat "$build.log"; echo "the configure does not say it leaves out the $part"; exit 1; }
done

cmake --build "$build" -j 2 > "$build.log" 2>&1 || { tail -30 "$build.log"; exit 1; }
DESTDIR="$stage" cmake --install "$build" --prefix /usr > /dev/null
for file in include/vantor.h share/fonts/vantor/lr.tf share/fonts/vantor/lb.tf; do
  [ -s "$stage/usr/$file" ] || { echo "usr/$file not installed"; exit 1; }
done
for file in libvantor.so.1 pkgconfig/vantor.pc cmake/Vantor/VantorConfig.cmake; do
  [ -n "$(find "$stage/usr" -path "*/lib*/$file" -print -quit)" ] ||
    { echo "$file not installed under usr/lib"; exit 1; }
done
echo "a bare configure builds and installs the library and its fonts"
