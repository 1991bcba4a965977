#!/usr/bin/env bash
# Runs the examples by a TESSEL that was built otherwise, and compares all that it writes with what
# build/TESSEL writes, to the byte; line ends, dates and elapsed times apart.
#   scripts/same-results.sh qemu-aarch64-static build-aarch64/TESSEL
# The last argument is the program, what stands before it runs it.
set -euo pipefail
cd "$(dirname "$0")/.."
[ $# -ge 1 ] || { echo "usage: scripts/same-results.sh [RUNNER ...] PROGRAM" >&2; exit 2; }
root=$PWD
# shellcheck disable=SC2034 # by its name
native=("$root/build/TESSEL")
other=("${@:1:$#-1}" "$(realpath "${!#}")")
if [ ! -x build/TESSEL ]; then
  scripts/install-packages.sh build
  cmake --preset release
  cmake --build --preset release --target TESSEL -j "$(scripts/cores.sh)"
fi

# Everything that reads, draws and computes, briefly; the program is the array of this name.
run_examples() {
  local -n tessel=$1
  cp -r "$root"/examples/{aravo,mafragh,simulation} .
  cp -r aravo answered
  for example in aravo mafragh; do
    (cd $example && "${tessel[@]}" <answers.txt >screen.txt)
  done
  (cd answered && "${tessel[@]}" dialogue --answers answers.txt >screen.txt)
  (
    cd aravo
    "${tessel[@]}" import --traits traits.csv --communities communities.csv \
      --environment environment.csv --session alps
    "${tessel[@]}" check alps
    for congruence in mantel procrustes rv; do
      "${tessel[@]}" analyse alps --iterations 200 --seed 1 --congruence $congruence \
        --tables $congruence --force
    done
    "${tessel[@]}" rank alps --criterion TE --sizes 1-4 --test 9 --seed 1
    "${tessel[@]}" rank alps --criterion RE --sizes 2 --seed 1
  ) >said-1.txt
  (
    cd mafragh
    "${tessel[@]}" import --traits traits.csv --communities communities.csv \
      --environment environment.csv --phylogeny phylogeny.nwk \
      --ordinal Succulence,Spikiness,HairyLeaf --session grassland
    "${tessel[@]}" analyse grassland --iterations 200 --seed 1
    "${tessel[@]}" rank grassland --criterion PT --sizes 2-3 --seed 1
  ) >said-2.txt
  (cd simulation && "${tessel[@]}" simulate filter.toml --data-sets 10 --streams yes) >said-3.txt
  # The progress line, drawn as time goes by, between the question before it and its backspaces.
  find . -name screen.txt -exec sed -E -i -e 's/ *Permutation test: +[0-9]+ of [0-9]+ *//g' \
    -e 's/\x08+//g' -e 's/ +$//' {} +
  # CRs of CR-LF, dates, times.
  find . -type f -exec sed -E -i -e 's/\r$//' -e 's/(Elapsed time[^:]*: *)[-+.0-9e]+/\1TIME/' \
    -e '/^[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9:]{8} [0-9]{4}$/d' {} +
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for program in native other; do
  mkdir "$work/$program"
  (cd "$work/$program" && run_examples $program)
done
if ! diff -r "$work/native" "$work/other" >"$work/differences"; then
  head -n 40 "$work/differences" >&2
  echo "${other[*]} writes something else than build/TESSEL." >&2
  exit 1
fi
echo "${other[*]} writes what build/TESSEL writes: $(find "$work/other" -type f | wc -l) files."
