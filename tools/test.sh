#!/usr/bin/env bash
# Sets up, builds, and runs every test (unit and end-to-end) under Wine. The
# tests run on the X display in DISPLAY, or on a private Xvfb (:99).
# Exits non-zero on any failure.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bash "$root/tools/setup.sh"
bash "$root/tools/build.sh"
cd "$root/build"
# The longer suite (ctest -L long) runs only when asked for.
if [ $# -eq 0 ]; then
    set -- -LE long
fi
ctest --output-on-failure "$@"
