#!/usr/bin/env bash
# Configures and builds into ./build (cross-compiled with mingw-w64).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cmake -S "$root" -B "$root/build" -G Ninja >/dev/null
cmake --build "$root/build"
