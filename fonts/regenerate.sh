#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes the default fonts lr.tf (regular) and lb.tf (bold) from Debian's Terminus bitmap
# fonts (package xfonts-terminus): 8x16 cells, coded by Unicode character, with Latin-1,
# Latin Extended-A, Greek, Cyrillic, arrows, box drawing and U+FFFD. The results are kept in this
# directory so that every build, native or cross, installs them without FreeType or the
# Terminus package on the build machine. Run it after changing the converter's output:
#   fonts/regenerate.sh build/tools/mkfont/vantor-mkfont [OUT_DIR] [SIZE]
# OUT_DIR defaults to fonts/, SIZE (the Terminus cell height) to 16.
set -euo pipefail
mkfont=$1
out=${2:-$(dirname "$0")}
size=${3:-16}
terminus=/usr/share/fonts/X11/misc
for source in "$terminus/ter-u${size}n_unicode.pcf.gz" "$terminus/ter-u${size}b_unicode.pcf.gz"; do
  [ -f "$source" ] || { echo "$source is missing: apt-get install -y xfonts-terminus" >&2; exit 1; }
done
mkdir -p "$out"
codes=1-255,latin-ext-a,greek,cyrillic,arrows,box,replacement
"$mkfont" "$terminus/ter-u${size}n_unicode.pcf.gz" --codepage Unicode --codes $codes -o "$out/lr.tf"
"$mkfont" "$terminus/ter-u${size}b_unicode.pcf.gz" --codepage Unicode --codes $codes -o "$out/lb.tf"
