#!/usr/bin/env bash
# Fails if a folder includes what its layer must not know, or a library of its needs a window's symbol.
# Usage: check_layers.sh [ROOT [BUILD_FOLDER]]
set -euo pipefail

cd "${1:-$(dirname "$0")/..}"
build=${2-}
status=0

# forbid FOLDERS FILES REGEX REASON: no file in these folders may include a header that matches.
forbid() {
    local folders=$1 files=$2 regex=$3 reason=$4 folder found
    for folder in $folders; do
        [ -d "$folder" ] || continue
        found=$(find "$folder" -type f -name "$files" -exec \
            grep -HnE "^[[:space:]]*#[[:space:]]*include[[:space:]]*[<\"]($regex)" {} + || true)
        if [ -n "$found" ]; then
            printf '%s\n  %s\n' "$found" "$reason"
            status=1
        fi
    done
}

windows='wx/(app|wx|window|frame|dialog|msgdlg|progdlg|panel|control|button|grid|notebook|splitter|stattext|textctrl|choice|slider|menu|toolbar|sizer|dc|dcclient|timer|aui/.*)\.h|frame/|Widgets/|app/|resources/'

forbid 'Util Include HDRFile' '*' 'wx/' 'The base layer and the writers know no wxWidgets.'
forbid 'engine xml' '*' "$windows|wx/(image|bitmap)\\.h|image/" 'No windows and no pictures below image/.'
forbid 'image' '*' "$windows|wx/bitmap\\.h|engine/HDRRoutine\\.h|HDRFile/" \
    'The series units read photographs; they know no window, no engine and no writer.'
forbid 'Widgets' '*' 'engine/HDRRoutine\.h|HDRFile/|frame/|app/' 'Controls know no engine.'
forbid 'resources' '*' 'engine/|HDRFile/|image/|xml/|Widgets/|frame/|app/|wx/(frame|dialog|window)\.h' \
    'The pictures know nobody.'
forbid 'cli' '*' "$windows" 'The command line needs no window.'
forbid 'Util Include engine HDRFile' '*.h' 'wx/' 'These headers show the standard library only.'
forbid 'Util Include engine HDRFile image xml resources Widgets frame app cli' '*.h' \
    'Imf|Imath|tiff|exiv2/|tinyxml|lapack|cblas' 'A library shows only in the source that wraps it.'
forbid 'Util' '*' 'engine/|HDRFile/|image/|xml/' 'The base layer knows nobody.'

# forbid_symbols REGEX LIBRARY...: what a header check can't see, such as a function declared by hand.
forbid_symbols() {
    local regex=$1 library found
    shift
    for library in "$@"; do
        [ -e "$build/$library" ] || continue
        found=$(nm -uC "$build/$library" | grep -E "$regex" | sort -u || true)
        if [ -n "$found" ]; then
            printf '%s needs:\n%s\n' "$library" "$found"
            status=1
        fi
    done
}

if [ -n "$build" ]; then
    forbid_symbols ' wx|gtk_|gdk_' Util/libls_util.a HDRFile/libls_hdrfile.a engine/libls_kernels.a
    forbid_symbols ' wx(Window|TopLevelWindow|Frame|Dialog|Control|App|DC|Bitmap)::|wxMessageBox|gtk_|gdk_' \
        engine/libls_progress.a engine/libls_engine.a xml/libls_xml.a image/libls_series.a image/libls_image.a \
        image/libls_cache.a
fi

# Sources that no target names aren't built, tested or seen.
while IFS= read -r source; do
    echo "$source: no target names this file."
    status=1
done < <(find Util engine HDRFile image xml resources Widgets frame app cli tests bench samples \
    -name '*.cpp' -printf '%f %h\n' 2>/dev/null | awk '
    # The folder whose list names a source is its own or the one above.
    function names(file,    line) {
        if (file in lists) return lists[file]
        while ((getline line < file) > 0) lists[file] = lists[file] " " line
        return lists[file]
    }
    {
        own = $2 "/CMakeLists.txt"; above = $2 "/../CMakeLists.txt"
        if (index(names(own), $1) == 0 && index(names(above), $1) == 0) print $2 "/" $1
    }')

exit $status
