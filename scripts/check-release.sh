#!/bin/sh
# Tries each file of dist/ on a bare system, as root: the Debian package and the source on a Debian of
# debootstrap with nothing added, the static program in a folder with nothing else but /dev/null, the
# Windows program under Wine. Each runs the examples, as a dialogue and by commands; what it writes
# must be what the program in build-release/program writes, dates and times apart.
#   scripts/check-release.sh            all files
#   scripts/check-release.sh deb zip    the named ones of: deb static source zip
# The bare Debian stays in build-release/bare for the next time.
set -eu
cd "$(dirname "$0")/.."
scripts/install-packages.sh release-check
root=$PWD
bare=$root/build-release/bare
box=$root/build-release/box
(cd dist && sha256sum --quiet -c SHA256SUMS)
wine=$(PATH=$PATH:/usr/lib/wine command -v wine64 || command -v wine)
[ $# -gt 0 ] || set -- deb static source zip

# Starts a program with the box for its whole world, in the folder of the box where it stands. A bare
# one has no shell that could change the folder.
# shellcheck disable=SC2016 # Perl, not shell
enter='use Cwd; my $box = shift; my $here = substr(getcwd, length $box) || "/";
  chroot $box and chdir $here and exec @ARGV; die "$ARGV[0]: $!\n"'
inside() { (cd "$box/$1" && shift && perl -e "$enter" "$box" "$@"); }

bare_debian() {
  if [ ! -d "$bare" ]; then
    rm -rf "$bare.part"
    debootstrap --variant=minbase bookworm "$bare.part" http://deb.debian.org/debian >"$box.log"
    mv "$bare.part" "$bare"
  fi
  cp -a "$bare" "$box"
  cp /etc/resolv.conf "$box/etc/"
}

prepare() {
  rm -rf "$box"
  case "$kind" in
    deb)
      bare_debian
      cp dist/*.deb "$box/"
      inside / sh -c 'apt-get update -qq && apt-get install -y -qq --no-install-recommends ./*.deb'
      ;;
    static)
      mkdir -p "$box/dev"
      mknod -m 666 "$box/dev/null" c 1 3
      tar -xf dist/tessel-*-linux-*.tar.gz -C "$box" --strip-components=1
      ;;
    source)
      bare_debian
      mkdir "$box/tessel"
      tar -xf dist/tessel-*-source.tar.gz -C "$box/tessel" --strip-components=1
      inside /tessel ./demo.sh
      inside /tessel cmake --install build --prefix /opt/tessel
      ;;
    zip)
      mkdir "$box"
      unzip -q dist/*.zip -d "$box"
      mv "$box"/tessel-*/* "$box/"
      ;;
  esac >"$box.log" 2>&1 || { tail -n 20 "$box.log" >&2; exit 1; }
}

# Runs the examples in the box.
run() { scripts/run-examples.sh "$box/work" "$@"; }

expected=$root/build-release/expected
rm -rf "$expected"
scripts/run-examples.sh "$expected" "$root/build-release/program/TESSEL"
for kind; do
  prepare
  case "$kind" in
    deb) run perl -e "$enter" "$box" TESSEL ;;
    static) run perl -e "$enter" "$box" /bin/TESSEL ;;
    source)
      run perl -e "$enter" "$box" /opt/tessel/bin/TESSEL
      inside /tessel cmake --build build --target uninstall >"$box.log"
      left=$(find "$box/opt/tessel" -type f)
      [ -z "$left" ] || { echo "not uninstalled: $left" >&2; exit 1; }
      ;;
    zip) run env WINEPREFIX="$root/build-release/wine" WINEDEBUG=-all "$wine" "$box/TESSEL.exe" ;;
  esac
  diff -r "$expected" "$box/work"
  echo "$kind: runs the examples on a bare system, with the expected results"
done
rm -rf "$box"
