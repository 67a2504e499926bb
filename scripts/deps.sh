#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need, only those missing, so a
# fresh Debian 12 machine needs nothing else. Sourced by the other scripts.
set -euo pipefail

VANTOR_PACKAGES=(
  build-essential cmake pkg-config
  googletest libgtest-dev libbenchmark-dev
  libfreetype-dev libpng-dev zlib1g-dev
  xfonts-terminus fonts-dejavu-core
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
  # The package lists can fail to download for a moment; try a few times.
  for attempt in 1 2 3; do
    if $sudo apt-get update -q && \
       DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -q --no-install-recommends \
         "${missing[@]}"; then
      return 0
    fi
    echo "apt-get failed (attempt $attempt), retrying" >&2
    sleep 5
  done
  echo "Could not install: ${missing[*]}" >&2
  return 1
}
