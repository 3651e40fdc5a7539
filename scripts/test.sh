#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every test.
#   scripts/test.sh              normal build (RelWithDebInfo) in build/
#   scripts/test.sh --release    Release build in build-release/, as a host or packager builds it
#   scripts/test.sh --sanitize   AddressSanitizer + UndefinedBehaviorSanitizer build in build-sanitize/
# Warnings are errors in all of these (they are not in a host's own build of the library).
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
"$root/scripts/setup.sh"

build="$root/build"
options=(-DCMAKE_BUILD_TYPE=RelWithDebInfo)
case "${1:-}" in
  "") ;;
  --release)
    build="$root/build-release"
    options=(-DCMAKE_BUILD_TYPE=Release -DCORECOMMON_BUILD_BENCH=OFF)
    ;;
  --sanitize)
    build="$root/build-sanitize"
    options=(-DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS=-O1 -DCORECOMMON_SANITIZE=ON -DCORECOMMON_BUILD_BENCH=OFF)
    export ASAN_OPTIONS=halt_on_error=1:abort_on_error=1:detect_leaks=1
    export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
    ;;
  *)
    echo "usage: scripts/test.sh [--release|--sanitize]" >&2
    exit 2
    ;;
esac

jobs=$(nproc)
cmake -S "$root" -B "$build" -G Ninja -DCORECOMMON_WARNINGS_AS_ERRORS=ON "${options[@]}" >/dev/null
cmake --build "$build" -j "$jobs"
ctest --test-dir "$build" --output-on-failure -j "$jobs"
