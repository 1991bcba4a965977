#!/usr/bin/env bash
# Runs the examples by a TESSEL that was built otherwise, and compares all that it writes with what
# build/TESSEL writes, to the byte; line ends, dates and elapsed times apart.
#   scripts/same-results.sh qemu-aarch64-static build-aarch64/TESSEL
# The last argument is the program, what stands before it runs it.
set -euo pipefail
cd "$(dirname "$0")/.."
[ $# -ge 1 ] || { echo "usage: scripts/same-results.sh [RUNNER ...] PROGRAM" >&2; exit 2; }
other=("${@:1:$#-1}" "$(realpath "${!#}")")
if [ ! -x build/TESSEL ]; then
  scripts/install-packages.sh build
  cmake --preset release
  cmake --build --preset release --target TESSEL -j "$(scripts/cores.sh)"
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
scripts/run-examples.sh "$work/native" "$PWD/build/TESSEL"
scripts/run-examples.sh "$work/other" "${other[@]}"
if ! diff -r "$work/native" "$work/other" >"$work/differences"; then
  head -n 40 "$work/differences" >&2
  echo "${other[*]} writes something else than build/TESSEL." >&2
  exit 1
fi
echo "${other[*]} writes what build/TESSEL writes: $(find "$work/other" -type f | wc -l) files."
