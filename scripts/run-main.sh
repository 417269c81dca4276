#!/usr/bin/env bash
# Builds the library and runs the main job.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j"$(nproc)" --target quadratic_example
./build/examples/quadratic_example
