#!/usr/bin/env bash
# Builds everything for arm64 with a cross compiler, and runs tests that need no display under emulation. The libraries
# come from Debian's arm64 packages of this release, which are unpacked into build/arm64-root and not installed.
# Usage: arm64.sh [ctest arguments]
set -euo pipefail

ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=scripts/setup.sh
. "$ROOT/scripts/setup.sh"

LS_SYSROOT=$ROOT/build/arm64-root
export LS_SYSROOT

unpack_libraries() {
    local package packages="g++ locales" library link
    for package in $BUILD_PACKAGES $TEST_PACKAGES; do
        case $package in *-dev) packages+=" $package" ;; esac
    done
    say "Unpacking libraries for arm64 ..."
    rm -rf "$LS_SYSROOT.new"
    # shellcheck source=/dev/null
    mmdebstrap --quiet --variant=extract --architectures=arm64 --include="$packages" \
        "$(. /etc/os-release && printf '%s' "$VERSION_CODENAME")" "$LS_SYSROOT.new"
    find "$LS_SYSROOT.new/usr" -type l -lname '/*' | while IFS= read -r link; do
        ln -sfr "$LS_SYSROOT.new$(readlink "$link")" "$link" # it would lead out of there
    done
    # What the package's own script would link.
    for library in libopenblas.so libopenblas.so.0 libblas.so.3 liblapack.so.3; do
        ln -s "openblas-pthread/$library" "$LS_SYSROOT.new/usr/lib/aarch64-linux-gnu/$library"
    done
    mv "$LS_SYSROOT.new" "$LS_SYSROOT"
}

# shellcheck disable=SC2086 # one word per package
install_packages "build for arm64" $BUILD_PACKAGES $ARM64_PACKAGES
[ -e "$LS_SYSROOT" ] || unpack_libraries
LS_EMULATOR="$(command -v qemu-aarch64 || command -v qemu-aarch64-static);-L;$LS_SYSROOT"
export LS_EMULATOR
configure arm64 ON
build arm64
# The emulator starts no program of its kind a second time, which death tests do, and knows neither limits of memory nor
# filters of system calls.
ctest --test-dir "$ROOT/build/arm64" --output-on-failure --no-tests=error -j "$(nproc)" -L unit -E 'packaging|layers|locale|help|scripts|cli|Program|Batch|Writers.ReportEachPercentageOnce|RogueDecoders|NullWhenThereIsNoMemory' "$@"
