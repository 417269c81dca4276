#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each one.
#   bash scripts/run-fuzz.sh            # about 10 s per target (what CI runs)
#   FUZZ_SECONDS=600 bash scripts/run-fuzz.sh quadratic_fuzz   # a longer local run
# Each target starts from its seed corpus in fuzz/corpus/<target>; new inputs
# that widen coverage go to build-fuzz/corpus/<target>, not into the tree.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${FUZZ_SECONDS:-10}"
bash scripts/install-deps.sh clang libclang-rt-14-dev
CC=clang CXX=clang++ cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DEVALG_FUZZ=ON \
  -DEVALG_BUILD_TESTS=OFF -DEVALG_BUILD_EXAMPLES=OFF -DEVALG_BUILD_TOOLS=OFF >/dev/null
cmake --build build-fuzz -j"$(nproc)"
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for f in fuzz/*_fuzz.cpp; do targets+=("$(basename "$f" .cpp)"); done
fi
for t in "${targets[@]}"; do
  mkdir -p "build-fuzz/corpus/$t" "fuzz/corpus/$t"
  echo "== $t (${seconds}s)"
  ASAN_OPTIONS=detect_leaks=1 "build-fuzz/fuzz/$t" -max_total_time="$seconds" -timeout=10 \
    -rss_limit_mb=2048 -print_final_stats=0 "build-fuzz/corpus/$t" "fuzz/corpus/$t" 2>&1 | tail -n 2
done
echo "fuzzing: ${#targets[@]} targets ran clean"
