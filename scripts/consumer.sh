#!/usr/bin/env bash
# Installs the library from build/ into a temporary prefix and builds and runs the
# host-application example in tests/consumer against it, as a host would.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$root/build" --prefix "$prefix" >/dev/null
cmake -S "$root/tests/consumer" -B "$prefix/consumer-build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$prefix/consumer-build"
"$prefix/consumer-build/consumer"
"$prefix/bin/rte" --version
