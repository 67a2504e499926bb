#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Prints the C host program of README.md (its first C block), so that tests compile the
# text a user copies rather than a copy of it that could drift.
#   readme-example.sh README.md > example.c
set -euo pipefail
example=$(awk '/^```c$/ { inside = 1; next } inside && /^```$/ { exit } inside' "$1")
case $example in
  *"int main"*) printf '%s\n' "$example" ;;
  *) echo "$1 has no C example with a main function" >&2; exit 1 ;;
esac
