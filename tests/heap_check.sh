#!/usr/bin/env bash
# Runs the file-reading unit tests (the repair of cut-short recordings among
# them) and the GPS sentence parsing (with its 10,000 random and mutated
# buffers) under Wine's heap checker, which validates the heap on each call
# and catches writes past a block. Slow (minutes), so it is run by hand, not
# by CI. Prints no heap warnings when all is well.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
log=$(mktemp)
# LC_ALL: the accented file tests need code page 1252, as their ctest entry.
LC_ALL=C.UTF-8 WINEDEBUG=warn+heap "$root/build/wine-run.sh" "$root/build/bin/unit_tests.exe" \
    --gtest_filter='BadInput.*:EventFile.*:OptionsFile.*:XmlEncoding.*:GgaReading.*:GgaRobustness.*:NmeaScan.*:GpsProbe.*:AviRepair*' >"$log" 2>&1 || { cat "$log"; exit 1; }
grep -E "PASSED|FAILED" "$log"
if grep -v '^\[' "$log" | grep -iE "heap|corrupt"; then
    echo "heap warnings above"
    exit 1
fi
