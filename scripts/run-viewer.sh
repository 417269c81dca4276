#!/usr/bin/env bash
# Builds the graphing page into build-web/viewer/ (index.html, viewer.js and
# the library compiled to WebAssembly, evalg.js and evalg.wasm) with Debian's
# emscripten, then serves it on 127.0.0.1 until interrupted.
#   bash scripts/run-viewer.sh                 # build, then serve on port 8080
#   bash scripts/run-viewer.sh --port 9000     # another port (PORT=9000 works too)
#   bash scripts/run-viewer.sh --build-only    # build, do not serve
set -euo pipefail
cd "$(dirname "$0")/.."
build_only=false
port="${PORT:-8080}"
while [ $# -gt 0 ]; do
  case "$1" in
    --build-only) build_only=true ;;
    --port) port="${2:?--port needs a number}"; shift ;;
    --port=*) port="${1#--port=}" ;;
    *) echo "usage: bash scripts/run-viewer.sh [--build-only] [--port N]" >&2; exit 2 ;;
  esac
  shift
done
bash scripts/install-deps.sh emscripten node-acorn
command -v node >/dev/null || bash scripts/install-deps.sh nodejs
# Debian's emscripten runs on node and looks for acorn on node's module path,
# which a node that is not Debian's own does not search.
export NODE_PATH="/usr/share/nodejs${NODE_PATH:+:$NODE_PATH}"
emcmake cmake -S viewer -B build-web/viewer -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build-web/viewer -j"${JOBS:-$(nproc)}"
echo "built build-web/viewer/: index.html, viewer.js, viewer.css, evalg.js, evalg.wasm"
if $build_only; then exit 0; fi
echo "press Ctrl-C to stop"
exec node viewer/serve.js build-web/viewer "$port"
