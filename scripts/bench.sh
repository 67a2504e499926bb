#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds a Release tree of its own (build-bench/) and runs the benchmark, which ends
# with a table of each path against its memory floor, then the position and layout
# table (every ratio, its goal and the worst canvas column). Arguments go to the benchmark,
# e.g. scripts/bench.sh --benchmark_filter=update --benchmark_repetitions=5
#   VANTOR_BENCH_ARMHF=1 also builds for armhf and runs the plain timer under qemu-arm.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
vantor_install_missing

options=(-DCMAKE_BUILD_TYPE=Release -DVANTOR_BUILD_TESTS=OFF -DVANTOR_BUILD_DESK_TOOLS=OFF)
cmake -S . -B build-bench "${options[@]}" > /dev/null
cmake --build build-bench --target vantor_bench vantor_position_bench vantor_rotation_bench \
  -j 2 > /dev/null
echo "== $(lscpu | sed -n 's/^Model name: *//p'), $(nproc) cores =="
build-bench/bench/vantor_bench --benchmark_repetitions=3 --benchmark_report_aggregates_only=true "$@"
echo "== Update at canvas columns 0-15, exact and padded rows, every layout; RGB_to_RGBA =="
build-bench/bench/vantor_position_bench
echo "== full-screen Update with the picture turned, against the unturned one =="
build-bench/bench/vantor_rotation_bench --benchmark_repetitions=3 \
  --benchmark_report_aggregates_only=true

if [ "${VANTOR_BENCH_ARMHF:-0}" = 1 ]; then
  cmake -S . -B build-bench-armhf "${options[@]}" \
    -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/arm-linux-gnueabihf.cmake > /dev/null
  cmake --build build-bench-armhf --target vantor_bench_plain vantor_position_bench -j 2 > /dev/null
  echo "== armhf build under qemu-arm (relative figures only) =="
  qemu-arm-static -L /usr/arm-linux-gnueabihf build-bench-armhf/bench/vantor_bench_plain
  qemu-arm-static -L /usr/arm-linux-gnueabihf build-bench-armhf/bench/vantor_position_bench \
    --rounds 3
fi
