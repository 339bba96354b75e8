#!/usr/bin/env bash
# The release zip as a user meets it: unpacked into an empty folder of a
# prefix made for this run alone by wineboot and nothing else (what a user
# has in ~/.wine), then the scenarios Release.* of the end-to-end tests drive
# the zip's own programs there (its synthcam.exe registers the rehearsal
# camera, its MAVU_VideoCapture.exe records an event and opens every window).
#   zip_in_fresh_prefix.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
build=$1
source_dir=$2
zip=$(ls "$build"/MAVU_VideoCapture-*-win64.zip 2>/dev/null | head -n 1 || true)
if [ -z "$zip" ]; then
    echo "no release zip in $build: cmake --build $build --target package" >&2
    exit 1
fi
work="$build/release-check"
rm -rf "$work"
mkdir -p "$work/unpacked"
(cd "$work/unpacked" && cmake -E tar xf "$zip")
folder="$work/unpacked/$(basename "$zip" .zip)"
for file in MAVU_VideoCapture.exe synthcam.dll synthcam.exe README.txt MavuVideoIcons; do
    if [ ! -e "$folder/$file" ]; then
        echo "the zip has no $file in its folder" >&2
        exit 1
    fi
done

export WINEPREFIX="$work/prefix"
export WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-mscoree,mshtml=}"
# shellcheck source=/dev/null
source "$source_dir/tools/wine-env.sh"
mavu_display_ready
wineboot -i </dev/null >/dev/null 2>&1 || true
wineserver -w
mavu_wineserver_ready
status=0
MAVU_RELEASE_FOLDER="Z:${folder//\//\\}" wine "$build/bin/e2e_tests.exe" --gtest_filter='Release.*' || status=$?
# A crash in such a prefix starts the debugger, which waits with the crashed
# process kept: that is a failure even where the scenario went on.
if pgrep -f "winedbg --auto" >/dev/null; then
    echo "a program crashed in the plain prefix (winedbg --auto is running)" >&2
    status=1
fi
wineserver -k 2>/dev/null || true
exit $status
