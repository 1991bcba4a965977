#!/usr/bin/env bash
# The guide in docs/guide: its pages show commands with their outputs and numbers, which this script
# runs and puts in.
#   scripts/build-guide.sh             renews the pages, builds build/guide/guide.html and guide.pdf
#   scripts/build-guide.sh --check     fails where a page differs from what the program says (dates
#                                      and times apart), where a link leads nowhere or a word is
#                                      misspelt, and builds both
#   scripts/build-guide.sh --pictures  draws docs/guide/pictures anew, by the R package in r/
set -euo pipefail
cd "$(dirname "$0")/.."

if [ ! -x build/TESSEL ]; then
  scripts/install-packages.sh build
  cmake --preset release
  cmake --build --preset release --target TESSEL
fi

if [ "${1:-}" = --pictures ]; then
  scripts/install-packages.sh r
  work=$(mktemp -d)
  trap 'rm -rf "$work"' EXIT
  R CMD INSTALL --no-docs --library="$work" r >/dev/null
  R_LIBS=$work TESSEL_PROGRAM=$PWD/build/TESSEL Rscript docs/guide/tools/pictures.R
  exit 0
fi

scripts/install-packages.sh guide r
tools=docs/guide/tools
pages=(docs/guide/[1-9]-*.md)
task="write"
[ "${1:-}" = --check ] && task=check
python3 $tools/pages.py $task build README.md "${pages[@]}" ||
  { echo "The guide differs from the program: scripts/build-guide.sh renews it." >&2; exit 1; }

if [ $task = check ]; then
  python3 $tools/links.py ./*.md docs/*.md docs/guide/*.md .github/ISSUE_TEMPLATE/*.md r/NEWS.md \
    packaging/*.md examples/*/*.md
  codespell --ignore-words $tools/words.txt README.md NEWS.md CONTRIBUTING.md CODE_OF_CONDUCT.md docs \
    packaging examples/*/README.* r/vignettes r/R .github
fi

mkdir -p build/guide
document=(--from gfm --standalone --toc --toc-depth 2 --metadata lang=en --metadata "title=TESSEL: a guide"
  --lua-filter "$tools/one_document.lua" --css "$PWD/$tools/guide.css" --resource-path docs/guide)
pandoc "${document[@]}" --self-contained --output build/guide/guide.html "${pages[@]}" \
  docs/guide/references.md
weasyprint -q build/guide/guide.html build/guide/guide.pdf
echo "The guide: build/guide/guide.html, build/guide/guide.pdf"
