#!/usr/bin/env bash
# Installs, runs and removes the packages in a Debian that holds nothing else. Needs root and debootstrap.
# Usage: test_packages.sh FOLDER_WITH_PACKAGES [WORK_FOLDER]
set -euo pipefail

source=$(cd "$(dirname "$0")/.." && pwd)
packages=$(realpath "$1")
work=$(realpath "${2:-build/package-test}")
base=$work/base
root=$work/root

say() { printf '== %s\n' "$*"; }

fail() {
    printf 'FAILED: %s\n' "$*"
    exit 1
}

# The bare root is made once; it is under its name when it is complete.
make_base() {
    [ -e "$base" ] && return
    local mirror
    # shellcheck disable=SC2016 # a format of apt-get
    mirror=$(apt-get indextargets --format '$(SITE)' 'Created-By: Packages' | head -n 1)
    say "a bare Debian from $mirror"
    mkdir -p "$work"
    rm -rf "$base.new"
    debootstrap --variant=minbase bookworm "$base.new" "$mirror" >"$work/debootstrap.log"
    mv "$base.new" "$base"
}

# inside COMMAND...: as root in a copy of the bare root, with its own view of processes, which end with it. The
# command isn't their first one, since an X server doesn't tell that process when it is ready.
inside() {
    # shellcheck disable=SC2016 # the inner shell expands them
    unshare --mount --pid --fork --kill-child sh -c \
        'root=$1; shift; mount -t proc proc "$root/proc"; chroot "$root" "$@"; exit $?' sh "$root" \
        env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive LANG=C.UTF-8 "$@"
}

as_user() { inside setpriv --reuid tester --regid tester --clear-groups env HOME=/home/tester "$@"; }

quietly() {
    "$@" >"$work/log" 2>&1 || {
        cat "$work/log"
        fail "$*"
    }
}

prepare() {
    rm -rf "$root"
    cp -a "$base" "$root"
    cp "$packages"/*.deb "$packages"/*.tar.gz "$root/tmp/"
    inside useradd --create-home tester
    mkdir "$root/home/tester/photos"
    cp "$source"/samples/room_0[357].jpg "$root/home/tester/photos/"
    chown -R --reference="$root/home/tester" "$root/home/tester"
    quietly inside apt-get update
}

install_package() {
    say "install"
    quietly inside sh -c 'apt-get install -y --no-install-recommends /tmp/lumistrand_*.deb'
    [ -z "$(inside find /usr/lib/lumistrand /usr/bin/lumistrand ! -user root -o -perm /022 ! -type l)" ] ||
        fail "installed files that others than root may write"
}

test_headless() {
    say "merge, as a user"
    quietly as_user lumistrand merge --group /home/tester/photos -o /home/tester/%.exr -o /home/tester/%.jpg
    [ -s "$root/home/tester/room_03.exr" ] || fail "no output"
    [ ! -e "$root/home/tester/.local" ] || fail "a merge left something with the user"
    quietly as_user lumistrand-hdr-cli --version

    say "merge, from the tarball"
    quietly as_user sh -c 'mkdir ~/unpacked && tar -xzf /tmp/lumistrand-*.tar.gz -C ~/unpacked --strip-components 1'
    quietly as_user /home/tester/unpacked/bin/lumistrand merge --group /home/tester/photos -o '/home/tester/%.2.exr'
    cmp "$root/home/tester/room_03.exr" "$root/home/tester/room_03.2.exr"
}

# The window program on a display: it comes up with the photographs and ends when its window is closed.
test_window() {
    if [ ! -e "$root/usr/lib/lumistrand/lumistrand-hdr" ]; then
        say "no window program in these packages"
        return
    fi
    say "window, as a user"
    quietly inside apt-get install -y --no-install-recommends xvfb xauth xdotool openbox
    cat >"$root/tmp/run_window.sh" <<'END'
openbox &
timeout 60 lumistrand /home/tester/photos/*.jpg &
program=$!
until window=$(xdotool search --onlyvisible --name 'Create HDR Image'); do
    kill -0 $program && sleep 0.5 || exit
done
xdotool windowactivate --sync "$window" key ctrl+q
wait $program
END
    quietly as_user xvfb-run -a sh /tmp/run_window.sh
    [ -e "$root/home/tester/.local/share/lumistrand/HDRLog.log" ] || fail "no log in the user's folder"
    [ -z "$(inside find /usr/lib/lumistrand -newer /tmp/run_window.sh)" ] || fail "files of the package were changed"
}

remove_package() {
    say "remove"
    mkdir -p "$root/home/tester/.local/share/lumistrand"
    echo mine >"$root/home/tester/.local/share/lumistrand/lsConfigHDR.xml.mine"
    quietly inside apt-get purge -y lumistrand
    local left
    left=$(inside find /usr /etc /var/lib -path /var/lib/dpkg -prune -o -name '*lumistrand*' -print)
    [ -z "$left" ] || fail "left behind: $left"
    [ -s "$root/home/tester/.local/share/lumistrand/lsConfigHDR.xml.mine" ] || fail "the user's folder is gone"
}

make_base
prepare
install_package
test_headless
test_window
remove_package
rm -rf "$root"
say "passed"
