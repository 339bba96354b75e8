#!/usr/bin/env bash
# Sets up, builds and starts MAVU Video Capture under Wine.
#   bash tools/run.sh            on a machine without a display: runs the
#                                program on a private Xvfb, takes a
#                                screenshot, closes it, and says where things are
#   bash tools/run.sh --display  keeps the program running on your display
#                                until you close it
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bash "$root/tools/setup.sh"
bash "$root/tools/build.sh"

if [ "${1:-}" = "--display" ]; then
    folder="$root/build/run"
    mkdir -p "$folder"
    cp -f "$root/build/bin/MAVU_VideoCapture.exe" "$folder/"
    cp -rf "$root/build/bin/MavuVideoIcons" "$folder/"
    cd "$folder"
    exec "$root/build/wine-run.sh" ./MAVU_VideoCapture.exe
fi

"$root/build/wine-run.sh" "$root/build/bin/mavu_demo.exe"
