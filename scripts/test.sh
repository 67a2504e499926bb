#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds everything and runs the whole test suite twice: a plain build with warnings
# as errors and every opt-in suite (real kernel, armhf, cross builds and Debian
# packages), then again with AddressSanitizer and UndefinedBehaviorSanitizer, where the
# opt-in suites leave their work to the plain build.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
vantor_install_missing "${VANTOR_TEST_PACKAGES[@]}"
# The suites that boot a real kernel and build for other targets need more.
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
run_suite build -DVANTOR_SYSTEM_TESTS=ON -DVANTOR_ARMHF_TESTS=ON -DVANTOR_PACKAGE_TESTS=ON

echo "== AddressSanitizer + UndefinedBehaviorSanitizer build =="
export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1:abort_on_error=0
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
run_suite build-sanitize -DVANTOR_SANITIZE=ON

echo "== fuzzers, 30 s each (scripts/fuzz.sh SECONDS for a longer run) =="
bash scripts/fuzz.sh 30

echo "All tests passed, plain and sanitized, and the fuzzers found nothing."
