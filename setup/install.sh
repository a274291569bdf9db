#!/usr/bin/env bash
# Installs the Debian packages of setup/packages.txt that are missing; does and says nothing when all
# are there. Needs root or sudo only when something is missing. With the word `packaging` those of
# setup/packaging-packages.txt as well.
set -euo pipefail

here="$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd -P)"

fail() {
  echo "setup: $*" >&2
  exit 1
}

lists=("$here/packages.txt")
case "$*" in
  "") ;;
  packaging) lists+=("$here/packaging-packages.txt") ;;
  *) fail "usage: setup/install.sh [packaging]" ;;
esac

# The names of the lists that dpkg does not know as installed, one a line.
missing_packages() {
  local name state
  while read -r name; do
    state="$(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null || true)"
    [ "$state" = installed ] || echo "$name"
  done < <(sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' "${lists[@]}")
}

command -v dpkg-query >/dev/null && command -v apt-get >/dev/null ||
  fail "this is no Debian system; install the equivalents of ${lists[*]} by hand"

mapfile -t missing < <(missing_packages)
[ "${#missing[@]}" -gt 0 ] || exit 0

as_root=(env DEBIAN_FRONTEND=noninteractive)
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || fail "run as root: apt-get install ${missing[*]}"
  as_root=(sudo "${as_root[@]}")
fi

# The tests start servers of their own. The package would make one for the whole machine and start it:
# it is told not to, unless somebody has said how it is to be done.
without_a_server_of_the_machine() {
  local settings=/etc/postgresql-common/createcluster.conf
  [[ " ${missing[*]} " == *" postgresql "* ]] && [ ! -e "$settings" ] || return 0
  "${as_root[@]}" mkdir -p "${settings%/*}"
  echo "create_main_cluster = false" | "${as_root[@]}" tee "$settings" >/dev/null
}

apt_install() {
  "${as_root[@]}" apt-get install -y -q --no-install-recommends -o Dpkg::Options::=--force-confold \
    "${missing[@]}"
}

echo "setup: installing ${missing[*]}"
without_a_server_of_the_machine
# A fresh system has no package lists yet, and old lists name files that are gone.
if apt-cache show "${missing[@]}" >/dev/null 2>&1 && apt_install; then exit 0; fi
"${as_root[@]}" apt-get update -q || fail "the package lists cannot be fetched"
apt_install || fail "could not install: ${missing[*]}"
