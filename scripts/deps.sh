#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the Debian packages the build needs, only those missing, so a fresh Debian 12
# machine needs nothing else. Sourced by the other scripts; vantor_install_missing takes
# more packages as arguments, such as VANTOR_TEST_PACKAGES for the test suites.
set -euo pipefail

# The library needs only the first line; the simulator and the converter the second.
VANTOR_PACKAGES=(
  build-essential cmake pkg-config libdrm-dev  # libdrm-dev: the DRM uapi headers only
  libfreetype-dev libpng-dev zlib1g-dev
)
# GoogleTest, Google Benchmark; Terminus regenerates the default fonts in a test and
# DejaVu is the converter tests' outline font.
# shellcheck disable=SC2034 # used by the scripts that source this one
VANTOR_TEST_PACKAGES=(
  googletest libgtest-dev libbenchmark-dev
  xfonts-terminus fonts-dejavu-core
  mandoc                    # lints the vantor command's manual page
  clang libclang-rt-14-dev  # libFuzzer and the sanitizers for scripts/fuzz.sh
)

vantor_install_missing() {
  local missing=()
  for package in "${VANTOR_PACKAGES[@]}" "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing: ${missing[*]}"
  local sudo=""
  [ "$(id -u)" -ne 0 ] && sudo="sudo"
  # The package lists can fail to download for a moment, and one stale index (a mirror
  # in mid-sync) makes apt-get update fail while the rest is usable: only the install
  # decides, and it is tried a few times. Another apt-get holding the lock is waited for.
  for attempt in 1 2 3; do
    $sudo apt-get update -q -o DPkg::Lock::Timeout=300 ||
      echo "apt-get update reported errors; trying the install anyway" >&2
    if DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -q --no-install-recommends \
         -o DPkg::Lock::Timeout=300 "${missing[@]}"; then
      return 0
    fi
    echo "apt-get failed (attempt $attempt), retrying" >&2
    sleep 5
  done
  echo "Could not install: ${missing[*]}" >&2
  return 1
}
