#!/usr/bin/env bash
# Unpacks the sources of a Debian package into a folder, for builds with compilers that Debian
# carries no libraries for. It works through apt, without changing the machine's package lists.
#   scripts/fetch-source.sh gsl build-web/gsl
# A folder that is there already is left as it is.
set -euo pipefail
[ $# -eq 2 ] || { echo "usage: scripts/fetch-source.sh PACKAGE FOLDER" >&2; exit 2; }
package=$1
folder=$2
[ -d "$folder" ] && exit 0

# Lists of its own: most machines know binary packages alone, and only root may change that.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/lists/partial"
# shellcheck disable=SC1091
release=$(. /etc/os-release && echo "${VERSION_CODENAME:-bookworm}")
echo "deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg]" \
  "http://deb.debian.org/debian $release main" >"$work/sources.list"
apt=(apt-get -qq -o "Dir::Etc::sourcelist=$work/sources.list" -o Dir::Etc::sourceparts=/dev/null
  -o "Dir::State::lists=$work/lists" -o Dir::Cache::pkgcache= -o Dir::Cache::srcpkgcache=
  -o APT::Sandbox::User= -o Acquire::Languages=none)
"${apt[@]}" update
(cd "$work" && "${apt[@]}" source --download-only "$package")

# Whole or not at all: an interrupted run leaves nothing that looks finished.
mkdir "$work/source"
tar -xf "$work/$package"_*.orig.tar.* -C "$work/source" --strip-components=1
mkdir -p "$(dirname "$folder")"
mv "$work/source" "$folder"
