#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the library, the demo, the simulator, the vantor command and the font converter,
# and runs the demo in the simulator: the keys below walk through an update (confirm,
# copy with progress), the device information and a reboot confirmation. The screenshots are written to out/. It is meant to work as
# the first command on a fresh Debian 12 machine, so it needs no test packages.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
vantor_install_missing

cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j "$(nproc)" --target demo vantor-sim vantor-cli vantor-mkfont vantor_fonts

# The README's next steps call the commands by name: build/bin holds them all, so one
# PATH entry is enough (each finds its own parts through the link).
mkdir -p build/bin
ln -sf ../tools/vantor/vantor ../tools/sim/vantor-sim ../tools/mkfont/vantor-mkfont build/bin/

keys="ok, left, ok, none, none, ok, down, ok, ok, down, down, ok, left, ok"
rm -rf out
build/tools/sim/vantor-sim --screen 800x480 --shots out --keys "$keys" \
  -- build/examples/demo /dev/fb0 800x480
echo "Screenshots of the demo are in $(pwd)/out/:"
ls out
echo
echo "vantor, vantor-sim and vantor-mkfont are in $(pwd)/build/bin; to type the README's"
echo "next steps as printed, put them on your PATH first:"
echo "  export PATH=\"$(pwd)/build/bin:\$PATH\""
