#!/bin/sh
# Takes a picture of the whole X display the program runs on.
# Usage: tools/screenshot.sh OUTPUT.png   (DISPLAY defaults to :99)
# The picture appears under its name only when complete.
set -e
out="${1:?usage: screenshot.sh OUTPUT.png}"
mkdir -p "$(dirname "$out")"
import -display "${DISPLAY:-:99}" -window root "$out.part.png"
mv -f "$out.part.png" "$out"
