#!/usr/bin/env bash
# Builds TESSEL for another kind of machine (scripts/cross-build.sh), runs the examples on it under
# an emulator and compares all that it writes with what the program of this machine writes; line
# ends, dates and elapsed times apart.
#   scripts/test-cross.sh windows|aarch64
set -euo pipefail
cd "$(dirname "$0")/.."
machine=${1:-}
scripts/cross-build.sh "$machine"
root=$PWD
build=$root/build-$machine
if [ ! -x build/TESSEL ]; then
  cmake --preset release
  cmake --build --preset release --target TESSEL
fi

wine=$(PATH=$PATH:/usr/lib/wine command -v wine64 || command -v wine || true)
other() {
  case "$machine" in
    windows) WINEPREFIX=$build/wine WINEDEBUG=-all "$wine" "$build/TESSEL.exe" "$@" ;;
    aarch64) qemu-aarch64-static "$build/TESSEL" "$@" ;;
  esac
}
native() { "$root/build/TESSEL" "$@"; }

# Everything that reads, draws and computes, briefly.
run_examples() {
  local tessel=$1
  cp -r "$root"/examples/{aravo,mafragh,simulation} .
  for example in aravo mafragh; do (cd $example && $tessel <answers.txt >screen.txt); done
  cp -r "$root/examples/aravo" answered
  (cd answered && $tessel dialogue --answers answers.txt >screen.txt)
  (
    cd aravo
    $tessel import --traits traits.csv --communities communities.csv --environment environment.csv \
      --session alps
    $tessel check alps
    for congruence in mantel procrustes rv; do
      $tessel analyse alps --iterations 200 --seed 1 --congruence $congruence --tables $congruence \
        --force
    done
    $tessel rank alps --criterion TE --sizes 1-4 --test 9 --seed 1
    $tessel rank alps --criterion RE --sizes 2 --seed 1
  ) >said.txt
  (
    cd mafragh
    $tessel import --traits traits.csv --communities communities.csv --environment environment.csv \
      --phylogeny phylogeny.nwk --ordinal Succulence,Spikiness,HairyLeaf --session grassland
    $tessel analyse grassland --iterations 200 --seed 1
    $tessel rank grassland --criterion PT --sizes 2-3 --seed 1
  ) >>said.txt
  (cd simulation && $tessel simulate filter.toml --data-sets 10 --streams yes) >>said.txt
  # The progress line, drawn as time goes by, between the question before it and its backspaces.
  find . -name screen.txt -exec sed -E -i -e 's/ *Permutation test: +[0-9]+ of [0-9]+ *//g' \
    -e 's/\x08+//g' -e 's/ +$//' {} +
  find . -type f -exec sed -E -i -e 's/\r$//' -e 's/(Elapsed time[^:]*: *)[-+.0-9e]+/\1TIME/' \
    -e '/^[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9:]{8} [0-9]{4}$/d' {} +
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for program in native other; do
  mkdir "$work/$program"
  (cd "$work/$program" && time run_examples $program)
done
diff -r "$work/native" "$work/other" >"$work/differences" || {
  head -n 40 "$work/differences" >&2
  echo "The program for $machine writes something else." >&2
  exit 1
}
echo "The program for $machine writes what that of this machine writes: $(find "$work/other" -type f | wc -l) files."
