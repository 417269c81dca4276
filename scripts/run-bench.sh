#!/usr/bin/env bash
# Builds the benchmarks in release mode, runs them, and prints the ratio
# table of the README. Extra arguments go to the benchmark program, e.g.
#   bash scripts/run-bench.sh --benchmark_filter=sinusoid
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh python3
cmake -S . -B build-bench -DCMAKE_BUILD_TYPE=Release -DEVALG_BUILD_BENCH=ON \
  -DEVALG_BUILD_TESTS=OFF -DEVALG_BUILD_EXAMPLES=OFF -DEVALG_BUILD_TOOLS=OFF >/dev/null
cmake --build build-bench -j"$(nproc)" --target evaluators_bench
./build-bench/bench/evaluators_bench --benchmark_min_time=0.2 --benchmark_repetitions=3 \
  --benchmark_report_aggregates_only=true --benchmark_enable_random_interleaving=true --benchmark_format=json --benchmark_out=build-bench/evaluators.json \
  --benchmark_out_format=json "$@" >/dev/null
python3 scripts/bench-report.py build-bench/evaluators.json
