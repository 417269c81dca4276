#!/usr/bin/env bash
# Builds the library and the evalg tool, then runs the main job: the gallery,
# every relation kind drawn on the handheld's default window, written to
# ./gallery (one PNG per kind, a labelled contact sheet and index.html).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j"$(nproc)" --target evalg_cli
./build/tools/evalg gallery -o gallery
echo "open gallery/index.html, or look at gallery/gallery.png"
