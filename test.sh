#!/usr/bin/env bash
# Installs what is missing, builds everything and passes all tests.
#   ./test.sh               the release build
#   ./test.sh --sanitizers  the same tests under the address and undefined-behaviour sanitizers
#   ./test.sh --threads     the tests that run on several threads under the thread sanitizer
#   ./test.sh --mpi         the release build with TESSEL-mpi, for many machines together
set -euo pipefail
cd "$(dirname "$0")"
scripts/install-packages.sh build test
preset=release
mpi=OFF
case "${1:-}" in
  --sanitizers | --threads) preset=${1#--} ;;
  --mpi)
    scripts/install-packages.sh mpi
    mpi=ON
    ;;
esac
cmake --preset "$preset" -DTESSEL_MPI="$mpi"
cmake --build --preset "$preset" -j "$(nproc)"
ctest --preset "$preset" -j "$(nproc)"
