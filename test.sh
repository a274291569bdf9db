#!/usr/bin/env bash
# Everything that must hold. First what needs no build: every file stands as clang-format lays it out, and
# clang-tidy finds nothing. Then four builds: the logic under the address and undefined-behaviour
# sanitizers, without Qt and sound libraries (it has to build so), the sound chain under the same, the
# sound chain under the thread sanitizer, and last the release build with all tests, whose CTest summary
# ends the run.
set -euo pipefail

root="$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd -P)"
cd -- "$root"
jobs="$(nproc)"

configure() {
  cmake --preset "$1" --log-level=WARNING >/dev/null
}

# check PRESET LABELS TARGET...: builds the targets and runs the tests whose label matches the
# expression LABELS, all tests when it is empty. One more at once than there are cores: those that
# wait for a lock or a device leave theirs idle.
check() {
  local preset="$1" labels="$2"
  shift 2
  echo "== $preset"
  configure "$preset"
  cmake --build --preset "$preset" --parallel "$jobs" --target "$@"
  ctest --test-dir "build/$preset" ${labels:+--label-regex "$labels"} --no-tests=error \
    --output-on-failure --parallel "$((jobs + 1))"
}

# Tells file and line of whatever is laid out in another way.
formatted() {
  echo "== clang-format"
  git ls-files -z '*.h' '*.cpp' | xargs -0 -P "$jobs" -n 20 clang-format --dry-run -Werror
}

tidy() {
  echo "== clang-tidy"
  configure tidy
  tests/lint/tidy.py build/tidy
}

# The tests wait for the disk tens of thousands of times; in memory, where there is room, they do not.
memory=/dev/shm
if [ -w "$memory" ] && [ "$(df --output=avail -BM "$memory" | tail -n 1 | tr -dc 0-9)" -ge 4000 ]; then
  TMPDIR="$(mktemp -d "$memory/zemo-tests-XXXXXX")"
  chmod 1777 "$TMPDIR"  # as the machine's own: a test gives up root's rights and goes on in it
  export TMPDIR
  trap 'rm -rf -- "$TMPDIR"' EXIT
fi

setup/install.sh
export ASAN_OPTIONS="detect_leaks=1:strict_string_checks=1${ASAN_OPTIONS:+:$ASAN_OPTIONS}"
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1${UBSAN_OPTIONS:+:$UBSAN_OPTIONS}"
export TSAN_OPTIONS="halt_on_error=1:second_deadlock_stack=1${TSAN_OPTIONS:+:$TSAN_OPTIONS}"

formatted
tidy
check asan-logic '^logic$' zemo_tests_logic
check asan '^sound$' zemo_tests_sound
check tsan '^sound$' zemo_tests_sound
check release '' all
