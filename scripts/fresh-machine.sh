#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Repeats a new user's first steps on fresh Debian 12 machines, made with debootstrap
# (needs root and the network; ~5 min). Uses the committed state (git archive HEAD).
#  1. scripts/demo.sh as the very first command: it installs what it needs and passes.
#  2. With only build-essential and cmake: the plain configure, build and install give
#     the library, its headers, pkg-config and CMake files, and the default fonts.
#   scripts/fresh-machine.sh [WORK_DIR]
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
vantor_install_missing debootstrap git
work=${1:-/tmp/vantor-fresh}
rm -rf "$work"
mkdir -p "$work"
debootstrap --variant=minbase bookworm "$work/base" http://deb.debian.org/debian > "$work/debootstrap.log"
cp /etc/resolv.conf "$work/base/etc/"

# Runs a command in a fresh copy of the base machine holding the source in /root/vantor.
in_fresh_machine() {
  local root=$work/$1
  shift
  cp -a "$work/base" "$root"
  mkdir -p "$root/root/vantor"
  git archive HEAD | tar -C "$root/root/vantor" -xf -
  mount -t proc proc "$root/proc"
  local status=0
  chroot "$root" /bin/bash -euo pipefail -c "cd /root/vantor && $*" || status=$?
  umount "$root/proc"
  return $status
}

echo "== scripts/demo.sh first"
in_fresh_machine demo scripts/demo.sh
echo "== a plain build with only build-essential and cmake"
in_fresh_machine bare 'apt-get update -q > /dev/null
  DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends build-essential cmake > /dev/null
  cmake -S . -B build | grep "Vantor:"
  cmake --build build -j "$(nproc)" > /dev/null
  DESTDIR=/stage cmake --install build > /dev/null
  ls /stage/usr/local/lib/libvantor.so.1 /stage/usr/local/lib/pkgconfig/vantor.pc \
     /stage/usr/local/lib/cmake/Vantor/VantorConfig.cmake /stage/usr/local/share/fonts/vantor/lr.tf \
     /stage/usr/local/share/fonts/vantor/lb.tf /stage/usr/local/include/vantor.h'
echo "Both fresh machines passed; they are in $work"
