#!/usr/bin/env bash
# Builds what TESSEL needs besides a compiler, from the sources of the Debian packages, into
# FOLDER/include and FOLDER/lib: the parts of GSL that it calls, and libcsv, as static libraries;
# CLI11 is headers alone, and the machine's own serve. FOLDER/libraries.cmake tells CMake of them (-C).
# What is there already stays.
#   CC=aarch64-linux-gnu-gcc AR=aarch64-linux-gnu-ar scripts/build-libraries.sh FOLDER HOST
# HOST names the machine that the libraries run on, as configure knows it.
set -euo pipefail
cd "$(dirname "$0")/.."
[ $# -eq 2 ] || { echo "usage: scripts/build-libraries.sh FOLDER HOST" >&2; exit 2; }
: "${CC:?names the compiler}" "${AR:?names the archiver}"
root=$PWD
mkdir -p "$1"
folder=$(cd "$1" && pwd)
host=$2
jobs=$(scripts/cores.sh)
mkdir -p "$folder/include" "$folder/lib"
# The same digits on every machine.
flags=(-O2 -ffp-contract=off)

# What TESSEL calls of GSL, and what that calls in turn.
gsl_parts=(utils sys err block vector matrix permutation complex poly sort blas linalg eigen rng
  randist specfunc cdf)

build_gsl() {
  [ -f "$folder/lib/libgsl.a" ] && return
  rm -rf "$folder/gsl"
  scripts/fetch-source.sh gsl "$folder/gsl"
  cd "$folder/gsl"
  ./configure --host="$host" --disable-shared --disable-dependency-tracking --quiet \
    CFLAGS="${flags[*]}"
  # Nothing computes in the wider registers that configure knows of a 32-bit PC.
  sed -i 's/\(#define HAVE_EXTENDED_PRECISION_REGISTERS\) 1/\1 0/' config.h
  for part in gsl cblas "${gsl_parts[@]}"; do make -s -j "$jobs" -C "$part" LIBTOOLFLAGS=--silent; done
  cp -RL gsl "$folder/include/"
  rm -f "$folder"/lib/libgsl*
  "$AR" crs "$folder/lib/libgslcblas.a" cblas/*.o
  "$CC" "${flags[@]}" -c "$root/ports/hypot.c" -o hypot.o
  # shellcheck disable=SC2046 # the names of objects hold no spaces
  "$AR" crs "$folder/lib/libgsl.a.part" hypot.o $(printf '%s/*.o ' "${gsl_parts[@]}")
  mv "$folder/lib/libgsl.a.part" "$folder/lib/libgsl.a"
}

build_csv() {
  [ -f "$folder/lib/libcsv.a" ] && return
  scripts/fetch-source.sh libcsv "$folder/libcsv"
  cp "$folder/libcsv/csv.h" "$folder/include/"
  "$CC" "${flags[@]}" -c "$folder/libcsv/libcsv.c" -o "$folder/libcsv/libcsv.o"
  "$AR" crs "$folder/lib/libcsv.a" "$folder/libcsv/libcsv.o"
}

(build_gsl)
(build_csv)
cp -RLu --preserve=timestamps /usr/include/CLI "$folder/include/"
cat >"$folder/libraries.cmake" <<'END'
set(GSL_INCLUDE_DIR ${CMAKE_CURRENT_LIST_DIR}/include CACHE PATH "")
set(GSL_LIBRARY ${CMAKE_CURRENT_LIST_DIR}/lib/libgsl.a CACHE FILEPATH "")
set(GSL_CBLAS_LIBRARY ${CMAKE_CURRENT_LIST_DIR}/lib/libgslcblas.a CACHE FILEPATH "")
set(CLI11_INCLUDE_DIR ${CMAKE_CURRENT_LIST_DIR}/include CACHE PATH "")
set(CSV_INCLUDE_DIR ${CMAKE_CURRENT_LIST_DIR}/include CACHE PATH "")
set(CSV_LIBRARY ${CMAKE_CURRENT_LIST_DIR}/lib/libcsv.a CACHE FILEPATH "")
END
