#!/bin/sh
# Makes a release of what is checked in, in dist/: the Debian package, a static Linux program and the
# Windows program in archives, the source, the formula for it, and SHA256SUMS. On Debian and Ubuntu.
#   scripts/release.sh          all of them; scripts/check-release.sh tries them on bare systems
#   scripts/release.sh --deb    the Debian package alone, from the build folder of test.sh
set -eu
cd "$(dirname "$0")/.."
scripts/install-packages.sh build release
made=$PWD/build-release/made
rm -rf "$made"
mkdir -p "$made" dist

# pack FOLDER GENERATOR: what CPack makes of a build folder, which it brings up to date.
pack() {
  log=$made/$2.log
  (cd "$1" && cpack -G "$2" -B "$made/$2") >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
  mv "$made/$2"/tessel* dist/
}

# build FOLDER OPTION...: the program alone.
build() {
  folder=$1
  shift
  cmake -S . -B "$folder" -DCMAKE_BUILD_TYPE=Release -DTESSEL_TESTS=OFF -DTESSEL_BENCH=OFF "$@" \
    >/dev/null
  cmake --build "$folder" -j "$(scripts/cores.sh)" | tail -n 1
}

judge_deb() { lintian --fail-on error --tag-display-limit 0 dist/*.deb; }

if [ "${1:-}" = --deb ]; then
  rm -f dist/*.deb
  pack build DEB
  judge_deb
  exit
fi

[ -z "$(git status --porcelain)" ] ||
  { echo "release.sh: there are changes that are not checked in" >&2; exit 1; }
version=$(sed -n 's/^project(TESSEL VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
for file in CITATION.cff NEWS.md docs/TESSEL.1 r/DESCRIPTION r/inst/CITATION packaging/README.md \
  packaging/apptainer/tessel.def packaging/conda/meta.yaml packaging/homebrew/tessel.rb; do
  grep -qF "$version" "$file" || { echo "release.sh: $file is not of version $version" >&2; exit 1; }
done
rm -rf dist
mkdir dist
build build-release/program
pack build-release/program DEB
judge_deb
build build-release/static -DTESSEL_STATIC=ON
pack build-release/static TGZ
scripts/cross-build.sh windows
pack build-windows ZIP
git archive --format=tar --prefix="tessel-$version/" HEAD | gzip -9n >"dist/tessel-$version-source.tar.gz"
sum=$(sha256sum "dist/tessel-$version-source.tar.gz" | cut -d ' ' -f 1)
sed -e '2,3d' -e "s/sha256 \"0*\"/sha256 \"$sum\"/" packaging/homebrew/tessel.rb >dist/tessel.rb
(cd dist && sha256sum ./*.deb ./*.gz ./*.zip ./*.rb >SHA256SUMS)
ls -l dist
