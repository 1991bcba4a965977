#!/bin/bash
# Untried on the project's machines, which have no conda.
# shellcheck disable=SC2086 # flags are many words
set -euxo pipefail
"$CC" ${CFLAGS:-} -fPIC -c libcsv/libcsv.c -o libcsv/libcsv.o
"$AR" crs libcsv/libcsv.a libcsv/libcsv.o
cmake ${CMAKE_ARGS:-} -S . -B build-conda -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$PREFIX" \
  -DTESSEL_TESTS=OFF -DTESSEL_BENCH=OFF \
  -DCSV_INCLUDE_DIR="$PWD/libcsv" -DCSV_LIBRARY="$PWD/libcsv/libcsv.a"
cmake --build build-conda -j "${CPU_COUNT:-1}"
cmake --install build-conda
