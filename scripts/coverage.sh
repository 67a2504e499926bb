#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Line coverage of src/ by the unit suite (ctest label "unit"), measured with gcovr.
# Builds into build-coverage/ and prints gcovr's summary; the line total is the figure
# we keep at or above 90 %.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
vantor_install_missing gcovr

cmake -S . -B build-coverage -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_C_FLAGS=--coverage -DCMAKE_CXX_FLAGS=--coverage \
  -DCMAKE_EXE_LINKER_FLAGS=--coverage -DCMAKE_SHARED_LINKER_FLAGS=--coverage >/dev/null
cmake --build build-coverage -j "$(nproc)" >/dev/null
find build-coverage -name '*.gcda' -delete
ctest --test-dir build-coverage -L unit -j "$(nproc)" --timeout 300 >/dev/null
gcovr -r . --filter 'src/' --print-summary build-coverage | tail -3
