#!/usr/bin/env bash
# Tests the page that scripts/build-web.sh made in a browser, against the program of this machine.
#   scripts/test-web.sh
# Pictures of every view are left in build-web/screenshots.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-packages.sh build web web-test
# The program to compare with; where the tests were built, it is there.
native=$PWD/build/TESSEL
if [ ! -x "$native" ]; then
  cmake -S . -B build-web/native -DCMAKE_BUILD_TYPE=Release -DTESSEL_TESTS=OFF -DTESSEL_BENCH=OFF
  cmake --build build-web/native --target TESSEL -j "$(scripts/cores.sh)"
  native=$PWD/build-web/native/TESSEL
fi
cd web
[ -d node_modules ] || npm ci --no-audit --no-fund
npm run --silent lint
TESSEL=$native npm test --silent
