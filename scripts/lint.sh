#!/usr/bin/env bash
# Formatting, layers, shell scripts and static analysis. Usage: lint.sh BUILD_FOLDER
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
shellcheck -x lumistrand test .ci/run scripts/*.sh resources/*.sh locale/*.sh

echo "clang-tidy"
printf '%s\0' "${sources[@]}" | xargs -0 -n 1 -P "$(nproc)" clang-tidy -p "$build" --quiet 2>/dev/null
echo "clean"
