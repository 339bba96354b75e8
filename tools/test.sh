#!/usr/bin/env bash
# Sets up, builds, and runs every test (unit and end-to-end) under Wine. The
# tests run on the X display in DISPLAY, or on a private Xvfb (:99).
# Exits non-zero on any failure.
#   bash tools/test.sh [ctest arguments]           under this machine's Wine
#   bash tools/test.sh --wine10 [ctest arguments]  under Wine 10, in a Debian
#                                                  13 root (tools/wine10.sh)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
wine10=no
if [ "${1:-}" = "--wine10" ]; then
    wine10=yes
    shift
fi
bash "$root/tools/setup.sh"
bash "$root/tools/build.sh"
# The longer suite (ctest -L long) runs only when asked for.
if [ $# -eq 0 ]; then
    set -- -LE long
fi
if [ "$wine10" = yes ]; then
    exec bash "$root/tools/wine10.sh" ctest --test-dir "$root/build" --output-on-failure "$@"
fi
cd "$root/build"
ctest --output-on-failure "$@"
