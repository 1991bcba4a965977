#!/usr/bin/env bash
# Builds the page that runs TESSEL in a browser: build-web/tessel.html, one file.
#   scripts/build-web.sh
# Emscripten compiles the statistics library, the program and the parts of GSL that they need; the
# libraries stay in build-web/ for the next time.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-packages.sh build web
build=$PWD/build-web
# Debian keeps the modules that emscripten's optimiser loads where node does not look.
export NODE_PATH=/usr/share/nodejs:/usr/lib/nodejs

build_program() {
  emcmake cmake -S . -B "$build/program" -C "$build/libraries.cmake" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_CXX_FLAGS=-fexceptions -DTESSEL_TESTS=OFF -DTESSEL_BENCH=OFF
  cmake --build "$build/program" --target TESSEL -j "$(scripts/cores.sh)"
}

# GSL's configure knows no WebAssembly; a 32-bit PC has the same sizes.
emmake scripts/build-libraries.sh "$build" i686-pc-linux-gnu
build_program
cd web
npm ci --no-audit --no-fund
npm run --silent build -- "$build"
