#!/usr/bin/env bash
# Regenerates the pictures in docs/images/ that the README shows, from a demo run.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/demo.sh
mkdir -p docs/images
cp out/0001.png docs/images/menu.png
cp out/0003.png docs/images/dialog.png
cp out/0004.png docs/images/progress.png
echo "docs/images/ updated"
