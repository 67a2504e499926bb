#!/usr/bin/env bash
# Prints the lines of test code against the lines of product code and their ratio, the
# measure we keep the test suite lean by. Tests are everything tracked under tests/
# (fuzz harnesses included) except fuzz corpora and other data files; code is src/,
# include/, tools/, examples/ and bench/. Binary files count in neither.
set -euo pipefail
cd "$(dirname "$0")/.."

count() {
  local total=0 file
  while IFS= read -r file; do
    [ -f "$file" ] || continue
    grep -Iq . "$file" 2>/dev/null || continue  # binary or empty
    total=$((total + $(wc -l < "$file")))
  done
  echo "$total"
}

tests=$(git ls-files tests | grep -v -E '/(corpus|regressions|data)/' | count)
code=$(git ls-files src include tools examples bench | count)
ratio=$(awk -v t="$tests" -v c="$code" 'BEGIN { printf "%.2f", (c > 0 ? t / c : 0) }')
echo "test lines: $tests"
echo "code lines: $code"
echo "ratio:      $ratio"
