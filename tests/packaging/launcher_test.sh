#!/usr/bin/env bash
# The launcher of an installation: what it starts, where, and with which argument. Stand-ins that tell how they
# were called take the place of both programs.
set -euo pipefail

source=$(cd "$(dirname "$0")/../../packaging" && pwd)
root=$(mktemp -d)
trap 'chmod -R u+w "$root"; rm -rf "$root"' EXIT
failed=0

lib=$root/opt/lib/lumistrand
mkdir -p "$root/opt/bin" "$lib/help" "$root/home" "$root/photos/a b"
cp "$source/lumistrand" "$root/opt/bin/"
cp "$source/launcher.sh" "$lib/"
ln -s "$root/opt/bin/lumistrand" "$root/linked"
for program in lumistrand-hdr lumistrand-hdr-cli; do
    # shellcheck disable=SC2016 # the stand-in expands them
    printf '#!/bin/sh\nprintf "%%s" "$0"; for a; do printf " <%%s>" "$a"; done\n' >"$lib/$program"
    chmod 755 "$lib/$program"
done

run() {
    (cd "$root/photos" &&
        env -u XDG_DATA_HOME -u WAYLAND_DISPLAY DISPLAY=:nowhere HOME="$root/home" "$@" 2>"$root/err")
}

fail() {
    echo "$1"
    failed=1
}

# expect NAME EXPECTED COMMAND...: the command's output.
expect() {
    local name=$1 expected=$2 actual
    shift 2
    actual=$(run "$@") || true
    [ "$actual" = "$expected" ] || fail "$name: expected $expected, got $actual $(cat "$root/err")"
}

# expect_refusal NAME TEXT COMMAND...: exit code 1, nothing started, and a message with this text.
expect_refusal() {
    local name=$1 text=$2 actual code=0
    shift 2
    actual=$(run "$@") || code=$?
    if [ $code -ne 1 ] || [ -n "$actual" ]; then fail "$name: code $code, output $actual"; fi
    grep -qF -- "$text" "$root/err" || fail "$name: no '$text' in: $(cat "$root/err")"
}

launcher=$root/opt/bin/lumistrand
own=$root/home/.local/share/lumistrand
expect_refusal 'no display' 'needs a display' env -u DISPLAY "$launcher" 1.jpg
[ ! -e "$own" ] || fail 'no display: something was copied all the same'
expect 'no files' "$own/lumistrand-hdr" "$launcher"
[ -d "$own/curve" ] || fail 'no files: there is no folder for curves'
expect 'relative and absolute paths' "$own/lumistrand-hdr <open|$root/photos/a b/1.jpg|/x/2.jpg>" \
    "$launcher" 'a b/1.jpg' /x/2.jpg
expect 'dots, and a name that begins with a dash' "$own/lumistrand-hdr <open|$root/1.jpg|$root/photos/-2.jpg>" \
    "$launcher" -- ../1.jpg -2.jpg
expect 'characters of shells and formats' "$own/lumistrand-hdr <open|$root/photos/%s \$x 'é' \\n*.jpg>" \
    "$launcher" "%s \$x 'é' \\n*.jpg"
expect 'a link to the launcher' "$own/lumistrand-hdr" "$root/linked"
expect 'merge' "$lib/lumistrand-hdr-cli <--group> <a b>" "$launcher" merge --group 'a b'
expect 'version' "$lib/lumistrand-hdr-cli <--version>" "$launcher" --version
expect 'another data folder' "$root/data/lumistrand/lumistrand-hdr" env XDG_DATA_HOME="$root/data" "$launcher"
expect 'a relative data folder counts as none' "$own/lumistrand-hdr" env XDG_DATA_HOME=data "$launcher"

[ "$(run "$launcher" --help | grep -c '^Usage')" = 1 ] || fail 'help'
expect_refusal 'a bar in a name' 'a|b.jpg' "$launcher" 1.jpg 'a|b.jpg'
expect_refusal 'an unknown option' '--nosuch' "$launcher" --nosuch
mapfile -t many < <(seq -f "$root/photos/a b/%0200.0f.jpg" 600)
expect_refusal 'too many files' 'so many' "$launcher" "${many[@]}"

# The user's folder: links to what the package changes, and everything else is the user's.
[ "$(readlink "$own/help")" = "$lib/help" ] || fail 'help is no link'
[ -z "$(ls -A "$lib/help")" ] || fail 'something was put into the package'
echo mine >"$own/lsConfigHDR.xml"
rm "$own/help" && mkdir "$own/help" && echo mine >"$own/help/page"
inode=$(stat -c %i "$own/lumistrand-hdr")
expect 'the same version' "$own/lumistrand-hdr" "$launcher"
[ "$(stat -c %i "$own/lumistrand-hdr")" = "$inode" ] || fail 'the same version was copied again'
printf '# a newer version\n' >>"$lib/lumistrand-hdr"
expect 'another version' "$own/lumistrand-hdr" "$launcher"
cmp "$lib/lumistrand-hdr" "$own/lumistrand-hdr" || fail 'another version was not copied'
[ "$(cat "$own/lsConfigHDR.xml" "$own/help/page")" = $'mine\nmine' ] || fail "the user's files were touched"
[ ! -e "$own/help/help" ] || fail "a link in the user's folder"
[ -z "$(find "$own" -name '.lumistrand*')" ] || fail 'a left-over copy'

echo 'no folder' >"$root/file"
expect_refusal 'a folder that cannot be made' "can't be made" env XDG_DATA_HOME="$root/file" "$launcher"
rm "$lib/lumistrand-hdr"
expect_refusal 'no window program' "isn't installed" "$launcher"
exit $failed
