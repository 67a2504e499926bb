#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Prints the lines of test code against the lines of product code and their ratio, the
# measure we keep the test suite lean by. Tests are everything tracked under tests/
# (fuzz harnesses included) except fuzz corpora and other data files; code is src/,
# include/, tools/, examples/ and bench/. Binary files count in neither.
#
# A line of code is one that is neither blank nor only a comment: // and /* */ in C and
# C++, # in shell scripts and CMake files. The raw line counts follow for comparison.
set -euo pipefail
cd "$(dirname "$0")/.."

# Prints "CODE RAW" for the files named on standard input.
count() {
  local file
  while IFS= read -r file; do
    [ -f "$file" ] && grep -Iq . "$file" 2> /dev/null && printf '%s\n' "$file"
  done | xargs -r -d '\n' awk '
    FNR == 1 {
      c = FILENAME ~ /\.(c|cpp|h)$/
      hash = FILENAME ~ /(\.sh|\.cmake|CMakeLists\.txt)$/
      block = 0
    }
    { raw++; line = $0; gsub(/^[ \t]+|[ \t]+$/, "", line) }
    line == "" { next }
    c && block { if (line ~ /\*\//) block = 0; next }
    c && line ~ /^\/\// { next }
    c && line ~ /^\/\*/ { if (line !~ /\*\//) block = 1; next }
    hash && line ~ /^#/ && line !~ /^#!/ { next }
    { code++ }
    END { print code + 0, raw + 0 }' |
    awk '{ code += $1; raw += $2 } END { print code + 0, raw + 0 }'  # xargs may split the list
}

read -r tests tests_raw < <(git ls-files tests | grep -v -E '/(corpus|regressions|data)/' | count)
read -r code code_raw < <(git ls-files src include tools examples bench | count)
ratio() { awk -v t="$1" -v c="$2" 'BEGIN { printf "%.2f", (c > 0 ? t / c : 0) }'; }
echo "test lines: $tests"
echo "code lines: $code"
echo "ratio:      $(ratio "$tests" "$code")"
echo "raw lines:  $tests_raw against $code_raw, ratio $(ratio "$tests_raw" "$code_raw")"
