#!/usr/bin/env bash
# Fails if a catalogue lacks a text that the sources or the template have, or has an unfinished one.
# Usage: every_text_is_translated.sh ROOT
set -euo pipefail
cd "$1"
sources=$(mktemp)
trap 'rm -f "$sources"' EXIT
locale/update.sh "$sources"
grep -q '^msgid "&Cancel"' "$sources" || { echo "The texts of the sources weren't found."; exit 1; }

status=0
for catalogue in locale/*.po; do
    for texts in "$sources" locale/lumistrand.pot; do
        # A text that only the template has is no fault of the sources.
        messages=$(msgcmp "$catalogue" "$texts" 2>&1) || {
            grep -v ': warning: ' <<<"$messages"
            status=1
        }
    done
    unfinished=$(msgattrib --untranslated "$catalogue"; msgattrib --only-fuzzy "$catalogue")
    [ -z "$unfinished" ] || { printf '%s:\n%s\n' "$catalogue" "$unfinished"; status=1; }
done
exit $status
