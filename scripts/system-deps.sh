#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs, only where missing, the Debian packages of the suites that meet a real
# kernel and the 32-bit targets (tests/system, docs/SYSTEM-TESTS.md):
#   QEMU, busybox and kmod to boot Debian's kernel with our own /init;
#   fbcat and netpbm, to read the screen back and compare it with the simulator's;
#   the i686 compiler, whose programs use the kernel's real 32-bit interfaces;
#   the ARM compiler and user-mode QEMU for the armhf unit tests;
#   the 64-bit ARM compiler and file for the cross-build test;
#   debhelper and lintian for the Debian package test.
# The kernel itself is downloaded by the runner, never installed.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/deps.sh"
VANTOR_SYSTEM_PACKAGES=(
  qemu-system-x86 busybox-static kmod xz-utils fbcat netpbm dosfstools e2fsprogs
  g++-i686-linux-gnu g++-arm-linux-gnueabihf qemu-user-static
  g++-aarch64-linux-gnu file
  dpkg-dev debhelper lintian git
)
vantor_install_missing "${VANTOR_SYSTEM_PACKAGES[@]}"
