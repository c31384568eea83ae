#!/usr/bin/env bash
# Brings the template and all catalogues up to the texts of the sources. New texts then wait for a translation,
# changed ones are marked as fuzzy. Usage: locale/update.sh [TEMPLATE], which writes only the template.
set -euo pipefail
cd "$(dirname "$0")/.."
template=${1-locale/lumistrand.pot}

# Headers show no texts. wxTRANSLATE marks a text that is translated elsewhere, such as a row of a table.
shopt -s nullglob
printf '%s\n' {app,frame,image,Widgets}/*.cpp locale/library_texts.txt |
    xgettext --files-from=- --language=C++ --from-code=UTF-8 --keyword --keyword=_ --keyword=wxGetTranslation \
        --keyword=wxTRANSLATE --add-comments=Translators: --no-location --package-name=Lumistrand \
        --package-version=6.0 --output="$template"
sed -i 's/charset=CHARSET/charset=UTF-8/' "$template"

if [ $# = 0 ]; then
    for catalogue in locale/*.po; do
        msgmerge --quiet --update --backup=none "$catalogue" "$template"
    done
fi
