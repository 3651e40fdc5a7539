#!/usr/bin/env bash
# Installs the library from a build folder (default build/) into a fresh prefix and uses it
# as host applications do, with no LD_LIBRARY_PATH: a CMake host (find_package), a one-file
# host built by plain g++ with pkg-config, and the installed tool after the prefix was moved.
#   scripts/consumer.sh [build folder]
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${1:-$root/build}
work=$(mktemp -d /tmp/corecommon-consumer.XXXXXX)
trap 'rm -rf "$work"' EXIT
unset LD_LIBRARY_PATH
prefix="$work/prefix"

cmake --install "$build" --prefix "$prefix" >/dev/null

echo "-- CMake host (find_package(CoreCommon))"
cmake -S "$root/tests/consumer" -B "$work/cmake-host" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/cmake-host" >/dev/null
"$work/cmake-host/consumer"

echo "-- one-file host (g++ with pkg-config corecommon)"
export PKG_CONFIG_PATH="$prefix/lib/pkgconfig"
libdir=$(pkg-config --variable=libdir corecommon)
# shellcheck disable=SC2046 # the flags are meant to split
g++ -std=c++20 -o "$work/pkgconfig-host" "$root/tests/consumer/main.cpp" \
  $(pkg-config --cflags --libs corecommon) -Wl,-rpath,"$libdir"
"$work/pkgconfig-host"

echo "-- installed prefix moved elsewhere"
mv "$prefix" "$work/moved"
# The library must find its own dependencies relative to itself, not through the host.
if ldd "$work/moved/lib/libCoreCommon.so" | grep "not found"; then
  echo "libCoreCommon.so cannot find its dependencies from a moved prefix" >&2
  exit 1
fi
"$work/moved/bin/rte" --version
