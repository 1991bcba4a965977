#!/bin/sh
# Installs what is missing, builds the program, imports the tables of the alpine plants in
# examples/aravo, runs their functional analysis, and shows the statistics with their probabilities.
set -eu
cd "$(dirname "$0")"

fail() {
  echo "demo.sh: $1" >&2
  [ $# -lt 2 ] || tail -n 20 "$2" >&2
  exit 1
}

scripts/install-packages.sh build || echo "Going on with what is there." >&2
for tool in cmake "${CXX:-c++}"; do
  command -v "$tool" >/dev/null 2>&1 || fail "$tool is missing"
done

mkdir -p build
log=build/demo-build.log
# The release preset builds the tests too, which a machine without GoogleTest cannot; test.sh
# configures with the preset again, which brings them back.
echo "Building (messages in $log) ..."
cmake --preset release >"$log" 2>&1 ||
  cmake --preset release -DTESSEL_TESTS=OFF -DTESSEL_BENCH=OFF >"$log" 2>&1 ||
  fail "the build could not be configured:" "$log"
cmake --build --preset release --target TESSEL --parallel "$(scripts/cores.sh)" \
  >>"$log" 2>&1 || fail "the program does not build:" "$log"

folder=build/demo
rm -rf "$folder"
cp -R examples/aravo "$folder"
program=$PWD/build/TESSEL

# Shows a command of the program and runs it in the folder.
run() {
  echo
  echo "\$ TESSEL $*"
  set -- "$program" "$@"
  ! command -v timeout >/dev/null 2>&1 || set -- timeout 600 "$@"
  (cd "$folder" && "$@") || fail "the program ended with status $?"
}

run import --traits traits.csv --communities communities.csv --environment environment.csv \
  --session alps
run analyse alps --iterations 1000 --seed 1 --congruence mantel

[ -s "$folder/alpsPrinda.txt" ] || fail "the program wrote no report"
[ -s "$folder/alpsTables/statistics.csv" ] || fail "the program wrote no tables"
echo
echo "The whole report: $folder/alpsPrinda.txt"
echo "The tables, all digits, null values included: $folder/alpsTables/"
