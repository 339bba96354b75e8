#!/usr/bin/env bash
# Builds the benchmarks and runs them under Wine, printing each measured
# work as a ratio to a plain memcpy of the same frame.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="${BUILD_DIR:-$root/build}"
[ -f "$build/build.ninja" ] || cmake -S "$root" -B "$build" -G Ninja >/dev/null
ninja -C "$build" transform_bench dark_bench sink_bench frame_time_bench >/dev/null
status=0
"$build/wine-run.sh" "$build/bin/transform_bench.exe" || status=$?
echo
"$build/wine-run.sh" "$build/bin/dark_bench.exe" || status=$?
echo
"$build/wine-run.sh" "$build/bin/sink_bench.exe" || status=$?
echo
"$build/wine-run.sh" "$build/bin/frame_time_bench.exe" || status=$?
exit $status
