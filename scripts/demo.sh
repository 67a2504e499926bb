#!/usr/bin/env bash
# Builds everything and runs the demo in the desk simulator, writing screenshots to out/.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
vantor_install_missing

cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j "$(nproc)"

if [ ! -x build/tools/sim/vantor-sim ] || [ ! -x build/examples/demo ]; then
  echo "The library, its tools and tests are built in build/."
  echo "The demo and the simulator are not part of this tree yet: once they are, this"
  echo "command runs examples/demo.c in vantor-sim with a scripted key sequence and"
  echo "writes its screenshots to out/."
  exit 0
fi

rm -rf out && mkdir -p out
build/tools/sim/vantor-sim --screen 800x480 --fonts build/fonts --shots out \
  --keys "down,ok,right,ok,down,down,ok" -- build/examples/demo /dev/fb0
echo "Screenshots written to $(pwd)/out/:"
ls out
