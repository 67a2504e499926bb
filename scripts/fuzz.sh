#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs each fuzz target for SECONDS (default 30), one after the other, with libFuzzer,
# AddressSanitizer and UndefinedBehaviorSanitizer, in its own clang build (build-fuzz).
#   scripts/fuzz.sh [SECONDS] [TARGET...]      targets: font interface keyscript
# The working corpus grows in build-fuzz/corpus/TARGET, seeded from tests/fuzz/corpus
# (and, for the font loader, from our real fonts). A fault leaves its input in
# build-fuzz/findings/TARGET and fails the run: copy that input into
# tests/fuzz/corpus/TARGET so the normal test suite replays it from then on.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-30}
shift || true
targets=("$@")
[ ${#targets[@]} -eq 0 ] && targets=(font interface keyscript)
build=${VANTOR_FUZZ_BUILD:-build-fuzz}  # another directory lets a long run go on beside work

CC=clang CXX=clang++ cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DVANTOR_WERROR=ON -DVANTOR_FUZZ=ON -DVANTOR_BUILD_DESK_TOOLS=OFF \
  -DVANTOR_BUILD_FONTS=OFF -DVANTOR_BUILD_BENCH=OFF > /dev/null
cmake --build "$build" -j "$(nproc)" $(printf -- '--target vantor_fuzz_%s ' "${targets[@]}") > "$build/fuzz-build.log" ||
  { tail -30 "$build/fuzz-build.log"; exit 1; }

# The sanitizer runtime is shared (our libraries are shared) and lives with clang.
export LD_LIBRARY_PATH=$(dirname "$(clang++ -print-file-name=libclang_rt.asan-x86_64.so)")
# Our platform layer must precede the C library, not the sanitizer runtime.
export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=0:verify_asan_link_order=0
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
status=0
for target in "${targets[@]}"; do
  corpus=$build/corpus/$target findings=$build/findings/$target
  mkdir -p "$corpus" "$findings"
  cp -n tests/fuzz/corpus/"$target"/* "$corpus"/ 2>/dev/null || true
  if [ "$target" = font ]; then cp -n fonts/l?.tf "$corpus"/ || true; fi
  echo "== $target: $seconds s =="
  # No input may make the library allocate anywhere near 300 MiB at once.
  "$build/tests/fuzz/vantor_fuzz_$target" "$corpus" -max_total_time="$seconds" \
    -malloc_limit_mb=300 -rss_limit_mb=2048 -timeout=10 -max_len=4096 \
    -artifact_prefix="$findings/" -print_final_stats=1 2>&1 | tee "$build/$target.log" |
    grep -E '^(#[0-9]+ +DONE|stat::number_of_executed_units|stat::peak_rss|==.*ERROR|SUMMARY)' || true
  if ls "$findings"/* > /dev/null 2>&1 || ! grep -q 'Done [0-9]* runs' "$build/$target.log"; then
    echo "$target: FINDINGS in $findings (log $build/$target.log)"
    status=1
  fi
done
exit $status
