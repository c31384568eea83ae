#!/usr/bin/env bash
# Runs a command in a clean clone of these sources, in a Debian that holds nothing else: what a fresh machine does.
# Usage: bare_root.sh RELEASE COMMAND...     RELEASE is bookworm, trixie or the like
#
# Needs root and debootstrap. The command is run by a user who may call sudo. The bare Debian is made once, in
# build/bare_roots; each call works in a copy of it, which goes afterwards unless KEEP_ROOT is set. To be sourced for
# its functions as well.
# shellcheck shell=bash

SOURCES=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
BARE_ROOTS=${BARE_ROOTS:-$SOURCES/build/bare_roots}

# make_base RELEASE: makes the bare Debian of a release; it is under its name when it is complete.
make_base() {
    local base=$BARE_ROOTS/$1 mirror
    [ -e "$base" ] && return
    # shellcheck disable=SC2016 # a format of apt-get
    mirror=$(apt-get indextargets --format '$(SITE)' 'Created-By: Packages' | head -n 1)
    printf '== a bare Debian %s from %s\n' "$1" "$mirror" >&2
    mkdir -p "$BARE_ROOTS/archives"
    rm -rf "$base.new"
    debootstrap --variant=minbase "$1" "$base.new" "$mirror" >"$base.log"
    mv "$base.new" "$base"
}

# inside ROOT COMMAND...: as root in that system, with its own view of mounts and processes, which end with the
# command. Downloaded packages are shared by all roots. The command isn't the first process there, since an X server
# doesn't report to that one when it is ready.
inside() {
    # shellcheck disable=SC2016 # the inner shell expands them
    unshare --mount --pid --ipc --fork --kill-child sh -ec '
        root=$1 archives=$2
        shift 2
        mount --bind "$root" "$root"
        mount -t proc proc "$root/proc"
        mount -t tmpfs tmpfs "$root/dev/shm"
        mount --bind "$archives" "$root/var/cache/apt/archives"
        cd "$root"
        mkdir -p .outside
        pivot_root . .outside # a chroot would keep the command from namespaces of its own
        umount -l /.outside
        "$@"
        exit $?' sh "$1" "$BARE_ROOTS/archives" \
        env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive LANG=C.UTF-8 "${@:2}"
}

# as_tester ROOT COMMAND...: the same as the user tester.
as_tester() {
    inside "$1" setpriv --reuid tester --regid tester --clear-groups \
        env HOME=/home/tester USER=tester "${@:2}"
}

# make_root RELEASE ROOT: a copy of the bare Debian, with a user called tester and fresh lists of packages.
make_root() {
    make_base "$1"
    rm -rf "$2"
    cp -a "$BARE_ROOTS/$1" "$2"
    rm -rf "$2/var/cache/apt/archives" && mkdir "$2/var/cache/apt/archives"
    printf 'APT::Keep-Downloaded-Packages "true";\n' >"$2/etc/apt/apt.conf.d/keep"
    inside "$2" useradd --create-home --shell /bin/bash tester
    inside "$2" apt-get -q update >"$BARE_ROOTS/update.log"
}

run_in_clone() {
    local root status=0
    root=$BARE_ROOTS/$1.work.$$
    make_root "$1" "$root"
    inside "$root" apt-get -q install -y --no-install-recommends sudo >"$BARE_ROOTS/sudo.log" 2>&1
    printf 'tester ALL=(ALL) NOPASSWD: ALL\n' >"$root/etc/sudoers.d/tester"
    git clone -q --no-hardlinks "$SOURCES" "$root/home/tester/lumistrand"
    chown -R --reference="$root/home/tester" "$root/home/tester/lumistrand"
    as_tester "$root" env --chdir=/home/tester/lumistrand "${@:2}" || status=$?
    if [ -n "${KEEP_ROOT-}" ]; then
        printf 'The root stays in %s\n' "$root" >&2
    else
        rm -rf "$root"
    fi
    return $status
}

if [ "${BASH_SOURCE[0]}" = "$0" ]; then
    set -euo pipefail
    [ $# -ge 2 ] || {
        sed -n '2,3s/^# //p' "$0" >&2
        exit 1
    }
    run_in_clone "$@"
fi
