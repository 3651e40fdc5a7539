#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every test.
#   scripts/test.sh              normal build (RelWithDebInfo) in build/
#   scripts/test.sh --release    Release build in build-release/, as a host or packager builds it
#   scripts/test.sh --sanitize   AddressSanitizer + UndefinedBehaviorSanitizer build in build-sanitize/
#   scripts/test.sh --tsan       ThreadSanitizer build in build-tsan/ of the test programs
#                                that start threads, and a run of each of them
# Warnings are errors in all of these (they are not in a host's own build of the library).
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
"$root/scripts/setup.sh"

# Test programs whose tests start threads (job queues, parallel encoders, parameter
# trees used from several threads, plug-in loading, device data writers). Add a program
# here when its tests start threads.
tsan_programs=(OperatingSystemTests ExceptionsTests ParameterTests UnitsTests CompressionTests PluginsTests DeviceDataTests)

build="$root/build"
options=(-DCMAKE_BUILD_TYPE=RelWithDebInfo)
mode=${1:-}
case "$mode" in
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
  --tsan)
    build="$root/build-tsan"
    tsan=-fsanitize=thread
    options=(-DCMAKE_BUILD_TYPE=Debug "-DCMAKE_CXX_FLAGS=-O1 $tsan" "-DCMAKE_EXE_LINKER_FLAGS=$tsan"
      "-DCMAKE_SHARED_LINKER_FLAGS=$tsan" "-DCMAKE_MODULE_LINKER_FLAGS=$tsan"
      -DCORECOMMON_BUILD_BENCH=OFF -DCORECOMMON_BUILD_TOOLS=OFF)
    # Qt is not built with ThreadSanitizer; scripts/tsan.supp lists the few reports
    # that come from inside Qt. Any report from our code fails the run.
    export TSAN_OPTIONS="halt_on_error=1 exitcode=66 second_deadlock_stack=1 suppressions=$root/scripts/tsan.supp"
    ;;
  *)
    echo "usage: scripts/test.sh [--release | --sanitize | --tsan]" >&2
    exit 2
    ;;
esac

jobs=$(nproc)
cmake -S "$root" -B "$build" -G Ninja -DCORECOMMON_WARNINGS_AS_ERRORS=ON "${options[@]}" >/dev/null

if [ "$mode" = "--tsan" ]; then
  cmake --build "$build" -j "$jobs" --target "${tsan_programs[@]}"
  export QT_QPA_PLATFORM=offscreen
  failed=()
  for program in "${tsan_programs[@]}"; do
    binary=$(find "$build/tests" -name "$program" -type f -perm -u+x | head -n 1)
    echo "-- $program"
    # From its own folder, as CTest would run it.
    if ! (cd "$(dirname "$binary")" && "$binary" --gtest_brief=1); then
      failed+=("$program")
    fi
  done
  if [ ${#failed[@]} -ne 0 ]; then
    echo "ThreadSanitizer run failed: ${failed[*]}" >&2
    exit 1
  fi
  echo "ThreadSanitizer: no reports in ${tsan_programs[*]}"
  exit 0
fi

cmake --build "$build" -j "$jobs"
ctest --test-dir "$build" --output-on-failure -j "$jobs"
