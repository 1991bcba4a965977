#!/usr/bin/env bash
# Installs what is missing, builds the program, runs the functional analysis of the alpine plants in
# examples/aravo from its prepared answers, and shows the statistics with their probabilities.
set -euo pipefail
cd "$(dirname "$0")"

fail() {
  echo "demo.sh: $1" >&2
  [ $# -lt 2 ] || tail -n 20 "$2" >&2
  exit 1
}

scripts/install-packages.sh build || echo "Going on with what is there." >&2
for tool in cmake c++; do
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
cmake --build --preset release --target TESSEL --parallel "$(getconf _NPROCESSORS_ONLN)" \
  >>"$log" 2>&1 || fail "the program does not build:" "$log"

folder=build/demo
rm -rf "$folder"
cp -r examples/aravo "$folder"
program=$PWD/build/TESSEL
limit=()
command -v timeout >/dev/null 2>&1 && limit=(timeout 600)
echo "Analysing examples/aravo: 75 communities, 82 species, 8 traits, 1000 iterations ..."
(cd "$folder" && "${limit[@]}" "$program" <answers.txt >screen.txt 2>errors.txt) ||
  fail "the program ended with status $?; its messages:" "$folder/errors.txt"

report=$folder/aravoPrinda.txt
[ -s "$report" ] || fail "the program wrote no report; its messages:" "$folder/errors.txt"
grep -q '^(\*)Probability' "$report" || fail "the report $report has no statistics"
echo
sed -n '/^Statistics and probabilities/,/^(\*)Probability/{/^(\*)Probability/!p}' "$report"
echo "The whole report: $report"
