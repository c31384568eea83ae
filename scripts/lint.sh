#!/usr/bin/env bash
# Formatting, layers, shell scripts, desktop files, manual pages and static analysis. Usage: lint.sh BUILD_FOLDER
set -euo pipefail

cd "$(dirname "$0")/.."
build=$1

mapfile -t sources < <(git ls-files '*.cpp')
mapfile -t headers < <(git ls-files '*.h')

echo "clang-format"
clang-format --dry-run -Werror "${sources[@]}" "${headers[@]}"
clang-format --dry-run -Werror --assume-filename=Handle.h <Include/LS/Util/Handle

echo "layers"
scripts/check_layers.sh

echo "shellcheck"
shellcheck -x lumistrand test .ci/run scripts/*.sh resources/*.sh locale/*.sh packaging/lumistrand packaging/*.sh \
    tests/packaging/*.sh

echo "desktop files"
desktop-file-validate packaging/lumistrand.desktop
appstreamcli validate --no-net packaging/*.metainfo.xml >/dev/null ||
    { appstreamcli validate --no-net --explain packaging/*.metainfo.xml; exit 1; }

echo "manual pages"
for page in docs/man/lumistrand-*.1; do
    warnings=$(MANWIDTH=80 man --warnings -l -Tutf8 "$page" 2>&1 >/dev/null)
    [ -z "$warnings" ] || { printf '%s: %s\n' "$page" "$warnings"; exit 1; }
done

echo "clang-tidy"
# The commands to compile by, as the build files are now, and what they compile but isn't in the tree.
ninja -C "$build" build.ninja >/dev/null
ninja -C "$build" -t targets all | sed -n 's/^\(.*\.inc\): .*/\1/p' | xargs ninja -C "$build" >/dev/null
# What only other configurations compile can't be read here.
mapfile -t compiled < <(printf '%s\n' "${sources[@]}" |
    grep -F -x -f <(sed -n "s|^ *\"file\": \"$PWD/\(.*\)\".*|\1|p" "$build/compile_commands.json"))
printf '%s\0' "${compiled[@]}" | xargs -0 -n 1 -P "$(nproc)" clang-tidy -p "$build" --quiet 2>/dev/null
echo "clean"
