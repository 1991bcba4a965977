#!/usr/bin/env bash
# Installs what is missing, builds everything and passes all tests.
#   ./test.sh               the release build
#   ./test.sh --sanitizers  the same tests under the address and undefined-behaviour sanitizers
set -euo pipefail
cd "$(dirname "$0")"
scripts/install-packages.sh build test
preset=release
[ "${1:-}" = "--sanitizers" ] && preset=sanitizers
cmake --preset "$preset"
cmake --build --preset "$preset" -j "$(nproc)"
ctest --preset "$preset" -j "$(nproc)"
