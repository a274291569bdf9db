#!/usr/bin/env bash
# Builds the Debian packages of this checkout into a folder outside of it, without root's rights:
#
#   packaging/build.sh FOLDER
#
# The folder is made where it is missing; packages of the same version in it are replaced. What it
# needs stands in setup/packages.txt and setup/packaging-packages.txt. Version and day are those of
# CMakeLists.txt, and what is new that of CHANGELOG.md.
set -euo pipefail

root="$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd -P)"

fail() {
  echo "packaging: $*" >&2
  exit 1
}

[ $# -eq 1 ] && [ "${1#-}" = "$1" ] || fail "usage: packaging/build.sh FOLDER"
folder="$(realpath --canonicalize-missing -- "$1")"
case "$folder/" in
  "$root"/*) fail "$folder lies within the checkout: name a folder outside of it" ;;
esac
mkdir -p -- "$folder"

version="$(sed -n 's/^project(ZemoRadio VERSION \([0-9.]*\) .*/\1/p' "$root/CMakeLists.txt")"
day="$(sed -n 's/^set(ZEMO_RELEASE_DATE \([0-9-]*\)).*/\1/p' "$root/CMakeLists.txt")"
[ -n "$version" ] && [ -n "$day" ] || fail "CMakeLists.txt tells no version, or no day of it"
SOURCE_DATE_EPOCH="$(date -u -d "$day" +%s)"
export SOURCE_DATE_EPOCH
export DEB_BUILD_OPTIONS="${DEB_BUILD_OPTIONS:-nocheck parallel=$(nproc)}"
# debhelper gives the build a home folder of its own.
if command -v ccache >/dev/null; then
  CCACHE_DIR="$(ccache --get-config cache_dir)"
  export CCACHE_DIR CCACHE_DEPEND=1 CCACHE_NOHASHDIR=1 CCACHE_SLOPPINESS=pch_defines,time_macros
fi

# The tree as git knows it, with what was not committed yet.
tree="$folder/tree"
rm -rf -- "$tree"
mkdir -- "$tree"
(cd -- "$root" && git ls-files -z --cached --others --exclude-standard |
  xargs -0 --no-run-if-empty cp --parents --no-dereference --preserve=mode,timestamps -t "$tree" --)
cp -r -- "$tree/packaging/debian" "$tree/debian"
maintainer="$(sed -n 's/^Maintainer: //p' "$tree/debian/control")"
"$tree/packaging/changelog.py" debian "$maintainer" >"$tree/debian/changelog"
grep -q -m 1 "^zemoradio ($version) " "$tree/debian/changelog" || fail "CHANGELOG.md has no version $version"

(cd -- "$tree" && dpkg-buildpackage --unsigned-source --unsigned-changes --build=binary)
rm -rf -- "$tree"
ls -- "$folder"/zemoradio*"_${version}_"*.deb
