#!/usr/bin/env bash
# Installs what is missing, builds the rte tool and runs its guided tour of the library.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
"$root/scripts/setup.sh"
cmake -S "$root" -B "$root/build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$root/build" -j "$(nproc)" --target rte
"$root/build/tools/rte/rte" demo
