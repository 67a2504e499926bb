#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Regenerates the pictures in docs/images/ that the README shows: the demo's screens and
# the installer script's, each from a run in the simulator.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/demo.sh
mkdir -p docs/images
cp out/0001.png docs/images/menu.png
cp out/0003.png docs/images/dialog.png
cp out/0004.png docs/images/progress.png

cmake --build build -j "$(nproc)" --target vantor-cli
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
head -c 3000000 /dev/urandom >"$work/fw.img"
PATH="$PWD/build/tools/vantor:$PATH" build/tools/sim/vantor-sim --no-view --shot-on-update \
  --screen 480x272 --shots "$work/shots" --keys "down,ok,up,ok,ok" -- \
  sh examples/installer.sh "$work/fw.img" "$work/slot-"
cp "$work/shots/0002.png" docs/images/installer-menu.png
cp "$work/shots/0005.png" docs/images/installer-yesno.png
cp "$work/shots/0010.png" docs/images/installer-gauge.png
cp "$work/shots/0016.png" docs/images/installer-copy.png

# UTF-8 text in German, Polish, Greek and Russian, and fifty files on a 480x272 panel: the
# menu scrolls, a triangle at either end saying that more entries lie beyond it.
sim=(build/tools/sim/vantor-sim --no-view --screen 480x272)
cli=build/tools/vantor/vantor
"${sim[@]}" --shots "$work/utf8" --keys "down,down,ok" -- $cli menu \
  --title "Sprache / Język / Γλώσσα / Язык" "Deutsch: Größe ändern" \
  "Polski: Zażółć gęślą jaźń" "Ελληνικά: Καλημέρα κόσμε" "Русский: Съешь же ещё этих булок"
cp "$work/utf8/0003.png" docs/images/menu-utf8.png
"${sim[@]}" --shots "$work/long" --keys "$(printf 'down,%.0s' $(seq 14))ok" -- $cli menu \
  --title "Firmware files" $(seq -f 'firmware-%02g.img' 1 50)
cp "$work/long/0015.png" docs/images/menu-long.png
# One screen on a panel mounted each way round: the pictures are the panel's pixels.
for degrees in 0 90 180 270; do
  PATH="$PWD/build/tools/vantor:$PATH" build/tools/sim/vantor-sim --no-view --rotate "$degrees" \
    --screen 480x272 --shots "$work/turned-$degrees" --keys ok -- sh -c \
    'vantor text --bold --fg FFB000 --at 8,8 "Recovery mode" &&
     vantor menu --title "Install firmware into" --tag a "Slot A" b "Slot B" > /dev/null'
  cp "$work/turned-$degrees/0002.png" "docs/images/rotate-$degrees.png"
done
echo "docs/images/ updated"
