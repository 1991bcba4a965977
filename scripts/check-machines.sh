#!/usr/bin/env bash
# Compiles TESSEL by the compilers that it is written for, where a warning is an error, and compares
# what each program writes for the examples with what build/TESSEL writes. It takes half an hour, and
# is made for Debian 12 and its root: GCC 13 and 14, Clang 17 and 18 and the newer libc++ are those of
# Debian 13, which it unpacks into build-machines/trixie.
#   scripts/check-machines.sh                 all of them, their messages in build-machines/*.log
#   scripts/check-machines.sh g++-11/aarch64  one
set -euo pipefail
cd "$(dirname "$0")/.."
here=(g++-11 g++-12 clang++-14 clang++-15 clang++-16 clang++-19 clang++-14/libc++)
debian13=(g++-13 g++-14 clang++-17 clang++-18 clang++-19/libc++)
arm=(g++-11/aarch64 clang++-14/aarch64 clang++-19/aarch64)
machines=build-machines
trixie=$machines/trixie
mkdir -p $machines

if [ $# -ne 1 ]; then
  failed=()
  for machine in "${here[@]}" "${debian13[@]}" "${arm[@]}"; do
    log=$machines/${machine//\//-}.log
    if "$0" "$machine" >"$log" 2>&1; then echo "$machine: $(tail -n 1 "$log")"; else
      echo "$machine: see $log"
      failed+=("$machine")
    fi
  done
  [ ${#failed[@]} -eq 0 ] || { echo "Not good: ${failed[*]}" >&2; exit 1; }
  exit 0
fi

machine=$1
folder=$machines/${machine//\//-}
cores=$(scripts/cores.sh)
is_among() { local word=$1; shift; printf '%s\n' "$@" | grep -qxF -- "$word"; }

cxx=${machine%/*}
options=(-DCMAKE_BUILD_TYPE=Release -DTESSEL_TESTS=OFF -DTESSEL_BENCH=OFF)
case "$machine" in
  */libc++) options+=(-DCMAKE_CXX_FLAGS=-stdlib=libc++) ;;
  g++*/aarch64) cxx=aarch64-linux-gnu-$cxx ;;
  */aarch64) options+=(-DCMAKE_C_COMPILER_TARGET=aarch64-linux-gnu -DCMAKE_CXX_COMPILER_TARGET=aarch64-linux-gnu) ;;
esac
case "$cxx" in
  clang*) cc=${cxx/++/} ;;
  *) cc=${cxx/g++/gcc} ;;
esac
options+=(-DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_C_COMPILER="$cc")
static=(-DCMAKE_EXE_LINKER_FLAGS=-static -DOpenMP_gomp_LIBRARY=gomp)

if is_among "$machine" "${here[@]}"; then
  scripts/install-packages.sh build compilers
  cmake -S . -B "$folder" "${options[@]}"
  cmake --build "$folder" --target TESSEL -j "$cores" -- -k
  scripts/same-results.sh "$folder/TESSEL"
elif is_among "$machine" "${arm[@]}"; then
  scripts/install-packages.sh build compilers aarch64
  CC=aarch64-linux-gnu-gcc AR=aarch64-linux-gnu-ar RANLIB=aarch64-linux-gnu-ranlib \
    scripts/build-libraries.sh build-aarch64 aarch64-linux-gnu
  cmake -S . -B "$folder" -C build-aarch64/libraries.cmake -DCMAKE_SYSTEM_NAME=Linux \
    -DCMAKE_SYSTEM_PROCESSOR=aarch64 "${options[@]}" "${static[@]}"
  cmake --build "$folder" --target TESSEL -j "$cores" -- -k
  scripts/same-results.sh qemu-aarch64-static "$folder/TESSEL"
elif is_among "$machine" "${debian13[@]}"; then
  scripts/install-packages.sh build compilers
  if [ ! -f $trixie/complete ]; then
    rm -rf $trixie
    debootstrap --variant=minbase \
      --include=cmake,make,g++-13,g++-14,clang-17,clang-18,clang-19,libc++-19-dev,libc++abi-19-dev \
      trixie $trixie http://deb.debian.org/debian
    touch $trixie/complete
  fi
  inside=(env -u CMAKE_CXX_COMPILER_LAUNCHER -u CMAKE_C_COMPILER_LAUNCHER chroot "$trixie")
  # Sources and libraries are copied; the program needs nothing of Debian 13, and runs here.
  CC=gcc AR=ar RANLIB=ranlib scripts/build-libraries.sh $machines/libraries x86_64-linux-gnu
  mkdir -p $trixie/tessel
  git ls-files -z --cached --others --exclude-standard | tar -c --null -T - | tar -x -C $trixie/tessel
  cp -ru $machines/libraries $trixie/
  "${inside[@]}" cmake -S /tessel -B "/$folder" -C /libraries/libraries.cmake "${options[@]}" "${static[@]}"
  "${inside[@]}" cmake --build "/$folder" --target TESSEL -j "$cores" -- -k
  scripts/same-results.sh "$trixie/$folder/TESSEL"
else
  echo "no compiler $machine: ${here[*]} ${debian13[*]} ${arm[*]}" >&2
  exit 2
fi
