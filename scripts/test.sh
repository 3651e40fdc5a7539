#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every test.
#   scripts/test.sh              normal build in build/
#   scripts/test.sh --sanitize   AddressSanitizer + UndefinedBehaviorSanitizer build in build-sanitize/
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
"$root/scripts/setup.sh"

build="$root/build"
options=(-DCMAKE_BUILD_TYPE=RelWithDebInfo)
if [ "${1:-}" = "--sanitize" ]; then
  build="$root/build-sanitize"
  options=(-DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS=-O1 -DCORECOMMON_SANITIZE=ON -DCORECOMMON_BUILD_BENCH=OFF)
  export ASAN_OPTIONS=halt_on_error=1:abort_on_error=1:detect_leaks=1
  export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
fi

jobs=$(nproc)
cmake -S "$root" -B "$build" -G Ninja "${options[@]}" >/dev/null
cmake --build "$build" -j "$jobs"
ctest --test-dir "$build" --output-on-failure -j "$jobs"
