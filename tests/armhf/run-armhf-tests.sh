#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the library and its unit tests for the 32-bit ARM target with Debian's cross
# compiler, and runs them under qemu-arm-static.
#   run-armhf-tests.sh SOURCE_DIR BUILD_DIR
set -euo pipefail
source_dir=$1
build=$2/armhf
cmake -S "$source_dir" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_TOOLCHAIN_FILE="$source_dir/cmake/toolchains/arm-linux-gnueabihf.cmake" \
  -DVANTOR_BUILD_DESK_TOOLS=OFF -DVANTOR_BUILD_FONTS=OFF -DVANTOR_BUILD_BENCH=OFF > /dev/null
cmake --build "$build" -j "$(nproc)" > "$build.log" 2>&1 || { tail -30 "$build.log"; exit 1; }
file "$build/src/libvantor.so.1".* 2>/dev/null | grep -q 'ARM' || readelf -h "$build"/src/libvantor.so | grep -q 'ARM'
ctest --test-dir "$build" --output-on-failure -j "$(nproc)" --timeout 300
