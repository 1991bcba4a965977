#!/bin/sh
# Installs what is missing, builds everything and passes all tests.
#   ./test.sh               the release build
#   ./test.sh --sanitizers  the same tests under the address and undefined-behaviour sanitizers
#   ./test.sh --threads     the tests that run on several threads under the thread sanitizer
#   ./test.sh --mpi         the release build with TESSEL-mpi, for many machines together
set -eu
cd "$(dirname "$0")"
preset=release
mpi=OFF
case "${1:-}" in
  --sanitizers | --threads) preset=${1#--} ;;
  --mpi) mpi=ON ;;
esac
scripts/install-packages.sh build test
[ $mpi = OFF ] || scripts/install-packages.sh mpi
jobs=$(scripts/cores.sh)
cmake --preset "$preset" -DTESSEL_MPI="$mpi"
cmake --build --preset "$preset" -j "$jobs"
ctest --preset "$preset" -j "$jobs"
