#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs examples/installer.sh in the simulator: slot b, Yes, the gauge, the copy, Ok.
# usage: installer-test.sh VANTOR-SIM DIRECTORY-OF-VANTOR INSTALLER
set -eu
sim=$1; bindir=$2; installer=$3
work=$(mktemp -d); trap 'rm -rf "$work"' EXIT
head -c 3000000 /dev/urandom >"$work/fw.img"
PATH="$bindir:$PATH" "$sim" --shots "$work/shots" --keys "down,ok,up,ok,ok" -- \
    sh "$installer" "$work/fw.img" "$work/slot-"
cmp "$work/fw.img" "$work/slot-b"
[ "$(ls "$work/shots" | wc -l)" -ge 4 ]
