#!/usr/bin/env bash
# The format of all sources by clang-format, the scripts by shellcheck, then clang-tidy on the library
# and the program.
#   scripts/lint.sh           all of it, some minutes long
#   scripts/lint.sh --quick   without clang-tidy
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-packages.sh build lint
find MXLib TESSEL_sources tests bench fuzz \( -name '*.cpp' -o -name '*.h' \) -print0 |
  xargs -0 clang-format --dry-run -Werror
shellcheck .ci/run ./*.sh scripts/*.sh packaging/conda/*.sh r/tools/*.sh
[ "${1:-}" != --quick ] || exit 0

# clang-tidy reads the commands of a build folder of its own, which knows neither Windows nor MPI. It
# takes one file at a time: with several its analyzer carries the state of one into the next.
cmake -S . -B build/lint -DTESSEL_TESTS=OFF -DTESSEL_BENCH=OFF >/dev/null
find MXLib TESSEL_sources -name '*.cpp' ! -path '*/windows/*' ! -name '*_mpi.cpp' -print0 |
  xargs -0 -n 1 -P "$(scripts/cores.sh)" clang-tidy -p build/lint --quiet 2> >(grep -v 'warnings generated' >&2)
echo "No finding."
