#!/usr/bin/env bash
# Makes a release of this checkout, up to its tag, and pushes nothing:
#
#   packaging/release.sh [OPTION...] VERSION FOLDER
#
# Sets version and day in CMakeLists.txt, moves what is unreleased in CHANGELOG.md to that version and
# commits both; runs ./test.sh; builds the packages into FOLDER, outside of the checkout, and has lintian
# read them; takes the figures of the soak into FOLDER/figures; writes FOLDER/SHA256SUMS over packages,
# figures and notes; and tags the commit as vVERSION. Whatever fails ends it with one line. It can be
# begun again at any time before the tag: what is done already is found so, or done again.
#
#   --day YYYY-MM-DD   the day of the version; today without it
#   --skip-tests       does not run ./test.sh, to try the rest
#   --packages DIR     takes the packages of a folder in which they were built of this version
#   --soak LENGTH      full (before a release), short (in between, to try) or none; full without it
#   --build DIR        takes the soak's programs from a build of this version; without it they are built
set -euo pipefail

root="$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd -P)"
packages=(zemoradio zemoradio-dbgsym zemoradio-demo)

fail() {
  echo "release: $*" >&2
  exit 1
}
step() {
  echo "== $*"
}

usage="usage: packaging/release.sh [--day YYYY-MM-DD] [--skip-tests] [--packages DIR] [--soak full|short|none] \
[--build DIR] VERSION FOLDER"
day="$(date -u +%Y-%m-%d)"
tests=yes soak=full built="" build=""
while [ $# -gt 0 ] && [ "${1#--}" != "$1" ]; do
  case "$1" in
    --skip-tests) tests=no && shift && continue ;;
  esac
  [ $# -ge 2 ] || fail "$usage"
  case "$1" in
    --day) day="$2" ;;
    --packages) built="$2" ;;
    --soak) soak="$2" ;;
    --build) build="$2" ;;
    *) fail "$usage" ;;
  esac
  shift 2
done
[ $# -eq 2 ] || fail "$usage"
version="$1"
folder="$(realpath --canonicalize-missing -- "$2")"
tag="v$version"

# The programs of the soak with what they are given, a line each.
soak_programs() {
  case "$soak" in
    full) printf '%s\n' "ScreenSoak 1200" "KillBench 200" "FaultHour 3600" ;;
    short) printf '%s\n' "ScreenSoak 120" "KillBench 40" "FaultHour 240" ;;
    none) ;;
    *) fail "$usage" ;;
  esac
}

check_words() {
  [[ "$version" =~ ^(0|[1-9][0-9]*)(\.(0|[1-9][0-9]*)){2}$ ]] || fail "'$version' is no version: three numbers with points"
  [ "$(date -u -d "$day" +%Y-%m-%d 2>/dev/null)" = "$day" ] || fail "'$day' is no day"
  case "$folder/" in
    "$root"/*) fail "$folder lies within the checkout: name a folder outside of it" ;;
  esac
  soak_programs >/dev/null
  [ -z "$built" ] || [ -d "$built" ] || fail "there is no folder $built"
  [ -z "$build" ] || [ -d "$build" ] || fail "there is no folder $build"
  built="${built:+$(realpath -- "$built")}" build="${build:+$(realpath -- "$build")}"
}

check_tree() {
  [ -z "$(git status --porcelain)" ] || fail "the tree is not clean: commit or put away what git status tells"
  ! git rev-parse -q --verify "refs/tags/$tag" >/dev/null || fail "$tag is there already: $version was released"
  local newest
  newest="$(git tag --list 'v*' --sort=-version:refname | head -n 1)"
  [ -z "$newest" ] || [ "$(printf '%s\n' "${newest#v}" "$version" | sort -V | tail -n 1)" = "$version" ] ||
    fail "$version is older than $newest"
}

# The one place of the version, its day, and its entry in the changelog.
set_version() {
  step "version $version of $day"
  sed -i -e "s/^project(ZemoRadio VERSION [0-9.]*/project(ZemoRadio VERSION $version/" \
    -e "s/^set(ZEMO_RELEASE_DATE [0-9-]*)/set(ZEMO_RELEASE_DATE $day)/" CMakeLists.txt
  grep -q "^project(ZemoRadio VERSION $version " CMakeLists.txt || fail "CMakeLists.txt has no place for the version"
  grep -q "^set(ZEMO_RELEASE_DATE $day)" CMakeLists.txt || fail "CMakeLists.txt has no place for its day"
  if ! packaging/changelog.py release "$version" "$day"; then
    git checkout -q -- CMakeLists.txt
    exit 1
  fi
  [ -z "$(git status --porcelain)" ] || git commit -q -m "Version $version" -- CMakeLists.txt CHANGELOG.md
}

take_packages() {
  local name file found
  if [ -z "$built" ]; then
    step "packages"
    packaging/build.sh "$folder"
    lintian --fail-on error,warning "$folder/zemoradio_${version}_"*.changes
  elif [ "$built" != "$folder" ]; then
    step "packages of $built"
    for name in "${packages[@]}"; do
      found=("$built/${name}_${version}_"*.deb)
      [ -f "${found[0]}" ] || fail "$built has no package $name of version $version"
      cp -- "${found[0]}" "$folder/"
    done
  fi
  for name in "${packages[@]}"; do
    file="$(package "$name")"
    [ -f "$file" ] || fail "there is no package $name of version $version in $folder"
    [ "$(dpkg-deb -f "$file" Version)" = "$version" ] || fail "$file is of another version within"
  done
}

# Its file in the folder.
package() {
  local found=("$folder/${1}_${version}_"*.deb)
  echo "${found[0]}"
}

# Each program's words, ahead of them what it was measured on. A bound that is broken ends the release.
take_figures() {
  local program length programs
  mapfile -t programs < <(soak_programs)
  [ "${#programs[@]}" -gt 0 ] || return 0
  if [ -z "$build" ]; then
    step "soak: build"
    build="$root/build/release"
    cmake --preset release --log-level=WARNING >/dev/null
    cmake --build --preset release --parallel "$(nproc)" --target zemoradio "${programs[@]%% *}"
  fi
  [ "$("$build/zemoradio" --version)" = "Zemo Radio $version" ] || fail "$build holds another version than $version"
  mkdir -p -- "$folder/figures"
  for program in "${programs[@]}"; do
    length="${program#* }" program="${program% *}"
    step "soak: $program $length"
    {
      echo "$program $length, version $version, $(git rev-parse --short HEAD)"
      echo "$(nproc) processors, $(sed -n 's/^model name[[:space:]]*: //p' /proc/cpuinfo | head -n 1), $(uname -sr)"
      echo
      "$build/$program" "$length" 2>&1
    } | tee "$folder/figures/$program.txt" || fail "$program does not hold its bounds: see $folder/figures/$program.txt"
  done
}

write_sums() {
  step "checksums"
  packaging/changelog.py notes "$version" >"$folder/NOTES-$version.txt"
  local files=("NOTES-$version.txt") name
  for name in "${packages[@]}"; do files+=("$(basename -- "$(package "$name")")"); done
  # Those of an earlier beginning count as well.
  for name in "$folder"/figures/*.txt; do
    ! grep -q -s -m 1 ", version $version, " "$name" || files+=("figures/${name##*/}")
  done
  (cd -- "$folder" && sha256sum -- "${files[@]}" >SHA256SUMS.new && mv -- SHA256SUMS.new SHA256SUMS)
}

set_tag() {
  [ -z "$(git status --porcelain)" ] || fail "the tree is not clean any more: $tag was not set"
  [ "$(git rev-parse HEAD)" = "$commit" ] || fail "the checkout has moved on meanwhile: $tag was not set"
  git tag --annotate --file="$folder/NOTES-$version.txt" --cleanup=verbatim "$tag"
  step "$tag is set, and nothing was pushed; packages, checksums and figures are in $folder"
}

check_words
cd -- "$root"
check_tree
set_version
commit="$(git rev-parse HEAD)"
if [ "$tests" = yes ]; then
  step "tests"
  ./test.sh
fi
mkdir -p -- "$folder"
take_packages
take_figures
write_sums
set_tag
