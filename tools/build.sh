#!/usr/bin/env bash
# Configures and builds into ./build (cross-compiled with mingw-w64), and
# packs the release zip.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cmake -S "$root" -B "$root/build" -G Ninja >/dev/null
cmake --build "$root/build"
# The Windows release zip: build/MAVU_VideoCapture-VERSION-win64.zip.
cmake --build "$root/build" --target package >/dev/null
