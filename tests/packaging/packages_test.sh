#!/usr/bin/env bash
# Makes the packages of a build, and merges photographs with the unpacked tarball, far from the build.
# Usage: packages_test.sh BUILD_FOLDER CPACK
set -euo pipefail

samples=$(cd "$(dirname "$0")/../../samples" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$2" --config "$1/CPackConfig.cmake" -B "$work/packages" >"$work/log" 2>&1 || {
    cat "$work/log"
    exit 1
}

# In a home of its own, from a folder with a blank in its name, without the build's libraries or folders.
mkdir "$work/un packed" "$work/home"
tar -xzf "$work"/packages/*.tar.gz -C "$work/un packed" --strip-components 1
prefix="$work/un packed"
merge() { env -i HOME="$work/home" TMPDIR="$work" PATH=/usr/bin:/bin "$prefix/bin/lumistrand" merge "$@"; }

merge "$samples"/room_0[357].jpg -o "$work/unpacked.hdr" --quiet
"$1/bin/lumistrand-hdr-cli" "$samples"/room_0[357].jpg -o "$work/built.hdr" --quiet
cmp "$work/unpacked.hdr" "$work/built.hdr"
[ "$(merge --version)" = "$("$1/bin/lumistrand-hdr-cli" --version)" ]
[ -z "$(ls -A "$work/home")" ] # a merge leaves nothing with the user
gzip -t "$prefix"/share/man/man1/*.gz
desktop="$prefix/share/applications/lumistrand.desktop"
[ -x "$prefix/bin/$(sed -n 's/^Exec=\([^ ]*\).*/\1/p' "$desktop")" ]
grep -q '^Exec=.* %F$' "$desktop" # takes the photographs that are opened with it
[ -f "$prefix/share/icons/hicolor/48x48/apps/$(sed -n 's/^Icon=//p' "$desktop").png" ]

# The Debian package: libraries as the linker sees them, files of root that only root may write.
deb=$(echo "$work"/packages/*.deb)
dpkg-deb --field "$deb" Depends | grep -q 'libwxbase3.2.*libwxgtk3.2'
if dpkg-deb --contents "$deb" | grep -vE '^(lrwxrwxrwx|drwxr-xr-x|-rw-r--r--|-rwxr-xr-x) root/root '; then
    echo "has an unexpected owner or mode"
    exit 1
fi
