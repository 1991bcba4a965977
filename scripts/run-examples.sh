#!/bin/sh
# Runs the examples by a program and leaves all that it writes and says in a folder, for comparison with
# another program's; line ends of another system, dates and elapsed times taken out.
#   scripts/run-examples.sh FOLDER COMMAND...   the words that start the program: build/TESSEL, wine64 ...
set -eu
examples=$(cd "$(dirname "$0")/../examples" && pwd)
mkdir -p "$1"
cd "$1"
shift

# Everything that reads, draws and computes, briefly.
cp -R "$examples/aravo" "$examples/mafragh" "$examples/simulation" .
cp -R aravo answered
for example in aravo mafragh; do (cd $example && "$@" <answers.txt >screen.txt); done
(cd answered && "$@" dialogue --answers answers.txt >screen.txt)
(
  cd aravo
  "$@" import --traits traits.csv --communities communities.csv --environment environment.csv \
    --session alps
  "$@" check alps
  for congruence in mantel procrustes rv; do
    "$@" analyse alps --iterations 200 --seed 1 --congruence $congruence --tables $congruence --force
  done
  "$@" rank alps --criterion TE --sizes 1-4 --test 9 --seed 1
  "$@" rank alps --criterion RE --sizes 2 --seed 1
) >said-1.txt
(
  cd mafragh
  "$@" import --traits traits.csv --communities communities.csv --environment environment.csv \
    --phylogeny phylogeny.nwk --ordinal Succulence,Spikiness,HairyLeaf --session grassland
  "$@" analyse grassland --iterations 200 --seed 1
  "$@" rank grassland --criterion PT --sizes 2-3 --seed 1
) >said-2.txt
(cd simulation && "$@" simulate filter.toml --data-sets 10 --streams yes) >said-3.txt

# The progress line, drawn as time goes by, between the question before it and its backspaces.
find aravo mafragh answered simulation -name screen.txt -exec sed -E -i \
  -e 's/ *Permutation test: +[0-9]+ of [0-9]+ *//g' -e 's/\x08+//g' -e 's/ +$//' {} +
find aravo mafragh answered simulation said-*.txt -type f -exec sed -E -i -e 's/\r$//' \
  -e 's/(Elapsed time[^:]*: *)[-+.0-9e]+/\1TIME/' \
  -e '/^[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9:]{8} [0-9]{4}$/d' {} +
