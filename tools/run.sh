#!/usr/bin/env bash
# Sets up, builds and runs MAVU Video Capture's main job under Wine: a
# synthetic camera, an event 40 seconds ahead with a 10-second duration, the
# countdown, the recording into an AVI with its report, and a screenshot
# taken during the recording. Prints where the AVI, the report and the
# screenshot are.
#   bash tools/run.sh            without a display: on a private Xvfb, and the
#                                program is closed at the end
#   bash tools/run.sh --display  on your display; the program stays open
#                                afterwards until you close it
#   bash tools/run.sh --wine10   under Wine 10, in a Debian 13 root made on
#                                first use (tools/wine10.sh), on a private Xvfb
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bash "$root/tools/setup.sh"
bash "$root/tools/build.sh"

if [ "${1:-}" = "--wine10" ]; then
    exec bash "$root/tools/wine10.sh" "$root/build/wine-run.sh" "$root/build/bin/mavu_demo.exe"
fi

if [ "${1:-}" = "--display" ]; then
    exec "$root/build/wine-run.sh" "$root/build/bin/mavu_demo.exe" --keep
fi
"$root/build/wine-run.sh" "$root/build/bin/mavu_demo.exe"
