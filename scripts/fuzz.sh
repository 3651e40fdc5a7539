#!/usr/bin/env bash
# Builds the libFuzzer targets with clang in build-fuzz/ and runs each for a while,
# starting from the seeds in fuzz/corpus/<target>/ (new finds stay in build-fuzz/corpus/).
#   scripts/fuzz.sh [seconds per target, default 20]
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
seconds=${1:-20}
"$root/scripts/setup.sh"

build="$root/build-fuzz"
CC=clang CXX=clang++ cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCORECOMMON_BUILD_FUZZ=ON -DCORECOMMON_WARNINGS_AS_ERRORS=ON -DCORECOMMON_BUILD_TESTS=OFF -DCORECOMMON_BUILD_TOOLS=OFF \
  -DCORECOMMON_BUILD_BENCH=OFF >/dev/null
cmake --build "$build" -j "$(nproc)" --target fuzzers

export ASAN_OPTIONS=halt_on_error=1:abort_on_error=1:detect_leaks=1
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
for source in "$root"/fuzz/*.cpp; do
  target=$(basename "$source" .cpp)
  corpus="$build/corpus/$target"
  mkdir -p "$corpus"
  log="$build/$target.log"
  if ! "$build/fuzz/$target" -max_total_time="$seconds" -max_len=4096 -print_final_stats=1 \
    -artifact_prefix="$build/$target-" \
    "$corpus" "$root/fuzz/corpus/$target" >"$log" 2>&1; then
    tail -n 60 "$log"
    echo "$target: FAILED (the input is saved as $build/$target-crash-*)"
    exit 1
  fi
  runs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$log" | grep -o '[0-9]*$' || echo "?")
  echo "$target: $runs runs in ${seconds} s, no failure"
done
