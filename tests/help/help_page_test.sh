#!/usr/bin/env bash
# The help page works offline, its links and pictures exist, and it explains every message and every shortcut.
# Usage: help_page_test.sh ROOT
set -euo pipefail

root=$1
folder=$root/docs/help
page=$folder/Lumistrand6_help.htm
largest_picture=$((150 * 1024))
status=0

fault() {
    printf '%s\n' "$*"
    status=1
}

# values XPATH: the values of attributes, one a line.
values() { xmllint --xpath "$1" "$page" 2>/dev/null | sed -n 's/^[^"]*"\(.*\)"$/\1/p'; }

# expect_on_page WHAT: reads texts from the input, at least one, and looks for each as it stands.
expect_on_page() {
    local text found=0
    while IFS= read -r text; do
        found=1
        grep -qF -- "$text" "$page" || fault "$1 isn't on the page: $text"
    done
    [ $found = 1 ] || fault "No $1 was found in the sources."
}

in_sources() { grep -rhoE --include='*.cpp' "$1" "$root"/{app,frame,image,Widgets,xml}; }

xmllint --noout "$page"

ids=$(values '//@id')
doubled=$(sort <<<"$ids" | uniq -d)
[ -z "$doubled" ] || fault "ids that stand twice: $doubled"
while IFS= read -r link; do
    case $link in
    '#'*) grep -qxF -- "${link#\#}" <<<"$ids" || fault "a link leads nowhere: $link" ;;
    *) fault "a link leads away: $link" ;;
    esac
done < <(values '//@href')
while IFS= read -r id; do
    values '//nav//@href' | grep -qxF -- "#$id" || fault "not among the contents: $id"
done < <(values '//h2/@id')

pictures=$(values '//img/@src')
while IFS= read -r picture; do
    [ -f "$folder/$picture" ] || { fault "no such picture: $picture"; continue; }
    [ "$(stat -c %s "$folder/$picture")" -le $largest_picture ] || fault "too large: $picture"
    # What isn't listed there isn't copied again when it changes.
    grep -qE "^ +$picture\)?$" "$root/app/CMakeLists.txt" || fault "not known to the build: $picture"
done <<<"$pictures"
for file in "$folder"/*; do
    name=${file##*/}
    [ "$file" = "$page" ] || grep -qxF -- "$name" <<<"$pictures" || fault "lies beside the page unused: $name"
done
[ "$(xmllint --xpath 'count(//img[not(@alt) or @alt = ""])' "$page")" = 0 ] || fault 'a picture has no text'

[ "$(xmllint --xpath 'count(//script | //link | //iframe | //object | //@style)' "$page")" = 0 ] ||
    fault 'the page holds what it should do without'
if grep -nE 'https?:|@import|url\(' "$page"; then
    fault 'the page loads something'
fi

expect_on_page 'message' < <(in_sources '"#[0-9]{7} ' | tr -d '" ' | sort -u)
expect_on_page 'line of the log' < <(in_sources 'wxLogError\("[^"%]+"' | sed 's/.*("\(.*\)"/\1/' | sort -u)
expect_on_page 'shortcut' < <(in_sources '\\t(Ctrl\+|Alt\+|Shift\+)*[A-Z0-9]+"' |
    sed 's|\\t\(.*\)"|<kbd>\1</kbd>|' | sort -u)
exit $status
