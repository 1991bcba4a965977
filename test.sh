#!/usr/bin/env bash
# Installs what is missing, builds everything and passes all tests.
#   ./test.sh               the release build
#   ./test.sh --sanitizers  the same tests under the address and undefined-behaviour sanitizers
#   ./test.sh --threads     the tests that run on several threads under the thread sanitizer
set -euo pipefail
cd "$(dirname "$0")"
scripts/install-packages.sh build test
preset=release
case "${1:-}" in --sanitizers | --threads) preset=${1#--} ;; esac
cmake --preset "$preset"
cmake --build --preset "$preset" -j "$(nproc)"
ctest --preset "$preset" -j "$(nproc)"
