#!/usr/bin/env bash
# Breaks each layer once, in a copy of the sources, and expects check_layers.sh to notice.
set -euo pipefail

root=$(cd "$(dirname "$0")/../.." && pwd)
copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT

for folder in Util Include xml engine HDRFile image resources Widgets frame app cli tests bench samples; do
    cp -r "$root/$folder" "$copy/"
done

failed=0
# expect_fault FILE LINE: with this line added to the file the check must fail.
expect_fault() {
    printf '%s\n' "$2" >>"$copy/$1"
    if "$root/scripts/check_layers.sh" "$copy" >/dev/null; then
        echo "not noticed: $2 in $1"
        failed=1
    fi
    rm "$copy/$1"
    [ ! -e "$root/$1" ] || cp "$root/$1" "$copy/$1"
}

"$root/scripts/check_layers.sh" "$copy"

expect_fault engine/HDRRoutine.cpp '#include <wx/frame.h>'
expect_fault engine/HDRRoutine.cpp '#include <wx/image.h>'
expect_fault engine/HDRRoutine.h '#include <wx/string.h>'
expect_fault HDRFile/Radiance.cpp '  #  include <wx/string.h>'
expect_fault HDRFile/OpenExr.h '#include <ImfRgba.h>'
expect_fault image/SourceCache.cpp '#include <wx/msgdlg.h>'
expect_fault image/ExifReader.h '#include <exiv2/exiv2.hpp>'
expect_fault image/SeriesChecks.cpp '#include "engine/HDRRoutine.h"'
expect_fault Util/Paths.cpp '#include "engine/CacheFolder.h"'
expect_fault Include/LS/Util/Handle '#include <wx/app.h>'
expect_fault cli/main.cpp '#include <wx/dialog.h>'
expect_fault xml/XmlNode.cpp '#include <wx/window.h>'
expect_fault image/SourceCache.cpp '#include "resources/Pictures.h"'
expect_fault resources/Pictures.cpp '#include "app/AboutSplashWnd.h"'
expect_fault engine/Forgotten.cpp '// no target names this file'

exit $failed
