#!/usr/bin/env bash
# Builds Zemo Radio and opens its main screen where there is a display, else airs without it: with the
# demo station (made at the first run), or with the station named by --station. All arguments pass on
# to `zemoradio`.
set -euo pipefail

root="$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd -P)"
program="$root/build/release/zemoradio"

"$root/setup/install.sh"
(
  cd -- "$root"
  cmake --preset release --log-level=WARNING >/dev/null
  cmake --build --preset release --target zemoradio --parallel "$(nproc)"
)

command=(run)
[ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}${QT_QPA_PLATFORM:-}" ] || command=()

for argument in "$@"; do
  case "$argument" in
    --station | --station=*) exec "$program" "${command[@]}" "$@" ;;
  esac
done

ZEMORADIO="$program" exec "$root/packaging/zemoradio-demo" "$@"
