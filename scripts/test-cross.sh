#!/usr/bin/env bash
# Builds TESSEL for another kind of machine (scripts/cross-build.sh), runs the examples there, under
# an emulator, and compares what it writes with this machine's (scripts/same-results.sh).
#   scripts/test-cross.sh windows|aarch64
set -euo pipefail
cd "$(dirname "$0")/.."
machine=${1:-}
scripts/cross-build.sh "$machine"
case "$machine" in
  windows)
    wine=$(PATH=$PATH:/usr/lib/wine command -v wine64 || command -v wine)
    export WINEPREFIX=$PWD/build-windows/wine WINEDEBUG=-all
    scripts/same-results.sh "$wine" build-windows/TESSEL.exe
    ;;
  aarch64) scripts/same-results.sh qemu-aarch64-static build-aarch64/TESSEL ;;
esac
