#!/usr/bin/env bash
# Builds TESSEL for another kind of machine, as one file that needs no libraries:
#   scripts/cross-build.sh windows    build-windows/TESSEL.exe, 64-bit Windows 10 and later
#   scripts/cross-build.sh aarch64    build-aarch64/TESSEL, Linux on 64-bit ARM
# GSL and libcsv are compiled from their sources into the same folder, and stay for the next time.
set -euo pipefail
cd "$(dirname "$0")/.."
machine=${1:-}
case "$machine" in
  windows) host=x86_64-w64-mingw32 compiler=$host-gcc-posix ;;
  aarch64) host=aarch64-linux-gnu compiler=$host-gcc ;;
  *) echo "usage: scripts/cross-build.sh windows|aarch64" >&2; exit 2 ;;
esac
scripts/install-packages.sh build "$machine"
build=$PWD/build-$machine
CC=$compiler AR=$host-ar RANLIB=$host-ranlib scripts/build-libraries.sh "$build" "$host"
cmake -S . -B "$build" -C "$build/libraries.cmake" \
  -DCMAKE_TOOLCHAIN_FILE="$PWD/ports/$machine.cmake" -DCMAKE_BUILD_TYPE=Release \
  -DTESSEL_TESTS=OFF -DTESSEL_BENCH=OFF
cmake --build "$build" --target TESSEL -j "$(scripts/cores.sh)"
