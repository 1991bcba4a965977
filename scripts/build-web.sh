#!/usr/bin/env bash
# Builds the page that runs TESSEL in a browser: build-web/tessel.html, one file.
#   scripts/build-web.sh
# Emscripten compiles the statistics library, the program and the parts of GSL that they need; the
# libraries stay in build-web/ for the next time.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-packages.sh build web
root=$PWD
build=$root/build-web
jobs=$(scripts/cores.sh)
# Debian keeps the modules that emscripten's optimiser loads where node does not look.
export NODE_PATH=/usr/share/nodejs:/usr/lib/nodejs

# What TESSEL calls of GSL, and what that calls in turn.
gsl_parts=(utils sys err block vector matrix permutation complex poly sort blas linalg eigen rng
  randist specfunc cdf)

build_gsl() {
  [ -f "$build/lib/libgsl.a" ] && return
  rm -rf "$build/gsl"
  scripts/fetch-source.sh gsl "$build/gsl"
  cd "$build/gsl"
  # configure knows no WebAssembly; a 32-bit PC has the same sizes, but registers of extended
  # precision, which WebAssembly has not.
  emconfigure ./configure --host=i686-pc-linux-gnu --disable-shared --disable-dependency-tracking \
    CFLAGS=-O2
  sed -i 's/\(#define HAVE_EXTENDED_PRECISION_REGISTERS\) 1/\1 0/' config.h
  for part in gsl cblas "${gsl_parts[@]}"; do emmake make -j "$jobs" -C "$part"; done
  mkdir -p "$build/include" "$build/lib"
  cp -RL gsl "$build/include/"
  emar crs "$build/lib/libgslcblas.a" cblas/*.o
  emcc -O2 -c "$root/web/hypot.c" -o hypot.o
  # shellcheck disable=SC2046 # the names of objects hold no spaces
  emar crs "$build/lib/libgsl.a.part" hypot.o $(printf '%s/*.o ' "${gsl_parts[@]}")
  mv "$build/lib/libgsl.a.part" "$build/lib/libgsl.a"
}

build_csv() {
  [ -f "$build/lib/libcsv.a" ] && return
  scripts/fetch-source.sh libcsv "$build/libcsv"
  mkdir -p "$build/include" "$build/lib"
  cp "$build/libcsv/csv.h" "$build/include/"
  emcc -O2 -c "$build/libcsv/libcsv.c" -o "$build/libcsv/libcsv.o"
  emar crs "$build/lib/libcsv.a" "$build/libcsv/libcsv.o"
}

build_program() {
  # CLI11 is headers alone, and the machine's own serve.
  mkdir -p "$build/include"
  cp -RL /usr/include/CLI "$build/include/"
  emcmake cmake -S . -B "$build/program" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_CXX_FLAGS=-fexceptions -DTESSEL_TESTS=OFF -DTESSEL_BENCH=OFF \
    -DGSL_INCLUDE_DIR="$build/include" -DGSL_LIBRARY="$build/lib/libgsl.a" \
    -DGSL_CBLAS_LIBRARY="$build/lib/libgslcblas.a" -DCLI11_INCLUDE_DIR="$build/include" \
    -DCSV_INCLUDE_DIR="$build/include" -DCSV_LIBRARY="$build/lib/libcsv.a"
  cmake --build "$build/program" --target TESSEL -j "$jobs"
}

(build_gsl)
(build_csv)
build_program
cd web
npm ci --no-audit --no-fund
npm run --silent build -- "$build"
