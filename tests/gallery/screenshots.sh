#!/usr/bin/env bash
# Takes a picture of every page of the gallery on a virtual display with a window manager.
# Usage: screenshots.sh GALLERY_PROGRAM OUTPUT_FOLDER [SCALE]. Needs ImageMagick's import.
set -euo pipefail

gallery=$1
output=$2
export GDK_SCALE=${3-1}
mkdir -p "$output"
here=$(cd "$(dirname "$0")" && pwd)

if [ -z "${LS_TEST_WINDOW_MANAGER-}" ]; then
    exec "$here/../../scripts/with_display.sh" openbox "$here/screenshots.sh" "$gallery" "$output" "$GDK_SCALE"
fi

"$gallery" --list | while read -r page; do
    "$gallery" "$page" &
    program=$!
    sleep 2
    import -window root -trim +repage "$output/$page.png"
    kill "$program" 2>/dev/null || true
    wait "$program" 2>/dev/null || true
done
