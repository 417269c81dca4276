#!/usr/bin/env bash
# Builds the graphing page, the native evalg tool and the native redraw timing
# program, then drives the page in headless Chromium (tests/browser): its
# canvas against the tool's pictures pixel for pixel, panning, zooming, bad
# input, shared links, trace, table, and redraw time against native.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh chromium
bash scripts/run-viewer.sh --build-only
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$(nproc)" --target evalg_cli
cmake -S viewer -B build-web/native -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build-web/native -j"$(nproc)" --target redraw_timing
cd tests/browser
npm ci --no-audit --no-fund --loglevel=error
node --test viewer.test.js
