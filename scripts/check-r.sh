#!/usr/bin/env bash
# Builds and checks the R package in r/ against the program, with its tests, as CRAN would; what
# needs the network is left out. An error, a warning or a note fails.
#   scripts/check-r.sh
set -euo pipefail
# Of a machine without a locale too: the tables hold names in UTF-8.
export LC_ALL=C.UTF-8
cd "$(dirname "$0")/.."
root=$PWD
scripts/install-packages.sh r
if [ ! -x build/TESSEL ]; then
  scripts/install-packages.sh build
  cmake --preset release
  cmake --build --preset release --target TESSEL
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# Files that a build on the user's desk left would be packed too.
cp -r "$root/r" tessel
export TESSEL_PROGRAM=$root/build/TESSEL TESSEL_EXAMPLES=$root/examples
export _R_CHECK_CRAN_INCOMING_=false _R_CHECK_FORCE_SUGGESTS_=false
export _R_CHECK_SYSTEM_CLOCK_=false _R_CHECK_RD_XREFS_=false
R CMD build tessel
status=0
R CMD check --as-cran --no-manual tessel_*.tar.gz || status=$?
if [ "$status" -ne 0 ] || grep -Eq '(ERROR|WARNING|NOTE)$' tessel.Rcheck/00check.log; then
  find tessel.Rcheck -name '*.fail' -exec cat {} +
  echo "The R package does not pass its check." >&2
  exit 1
fi

# Without the program the package installs as a user would do it, and says what is missing.
mkdir library
cd "$root"
env -u TESSEL_PROGRAM R_LIBS="$work/library" Rscript - "$work/library" <<'R'
library_of_test <- commandArgs(TRUE)
install.packages("r", repos = NULL, type = "source", lib = library_of_test, quiet = TRUE)
library(tessel, lib.loc = library_of_test)
options(tessel.program = file.path(library_of_test, "none"))
stopifnot(!tessel_available(), grepl("no program", try(tessel_path(), silent = TRUE)))
plot(read_tessel(system.file("extdata", "tables", package = "tessel")))
R
rm -f Rplots.pdf
