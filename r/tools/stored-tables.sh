#!/usr/bin/env bash
# Makes inst/extdata anew: the alpine tables, and what the program gives for them, for help pages,
# vignette and those tests that run without the program.
#   r/tools/stored-tables.sh [program]
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
program=$(realpath "${1:-$root/build/TESSEL}")
to=$root/r/inst/extdata
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

mkdir -p "$to"
cp "$root"/examples/aravo/{traits,communities,environment,types}.csv "$to"
cp -r "$to"/{types.csv,world} .
"$program" import --traits "$to/traits.csv" --communities "$to/communities.csv" \
  --environment "$to/environment.csv" --session study >import.txt

"$program" analyse study --types types.csv --iterations 199 --seed 1 --tables tables --quiet
"$program" rank study --criterion TE --test 99 --seed 1 --tables ranking --quiet
(cd world && "$program" simulate filter.toml --data-sets 20 --iterations 99 --seed 1 \
  --tables simulation --quiet && mv simulation ..)
for folder in tables ranking simulation; do
  rm -rf "${to:?}/$folder"
  cp -r "$folder" "$to/$folder"
done
# What nothing here draws is left out, and resemblances are kept to five digits, to keep them small.
rm -f "$to"/tables/{S,Q,DZ,DY,P,DP}.csv "$to"/ranking/null.csv
Rscript - "$to"/tables/{DE,DT,DX}.csv <<'R'
for (path in commandArgs(TRUE)) {
  table <- read.csv(path, check.names = FALSE)
  table[-1] <- signif(table[-1], 5)
  write.csv(table, path, row.names = FALSE, quote = FALSE)
}
R
