#!/usr/bin/env bash
# Builds everything and runs the whole test suite twice: a plain build with warnings
# as errors, then the same with AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
vantor_install_missing
# The suites that boot a real kernel and build for the 32-bit targets need more.
bash scripts/system-deps.sh

jobs=$(nproc)

run_suite() {
  local dir=$1
  shift
  cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVANTOR_WERROR=ON "$@"
  cmake --build "$dir" -j "$jobs"
  ctest --test-dir "$dir" --output-on-failure -j "$jobs" --timeout 300
}

echo "== plain build =="
run_suite build

echo "== AddressSanitizer + UndefinedBehaviorSanitizer build =="
export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1:abort_on_error=0
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
run_suite build-sanitize -DVANTOR_SANITIZE=ON

echo "== fuzzers, 30 s each (scripts/fuzz.sh SECONDS for a longer run) =="
bash scripts/fuzz.sh 30

echo "All tests passed, plain and sanitized, and the fuzzers found nothing."
