#!/usr/bin/env bash
# Installs, runs and removes the packages in a Debian that holds nothing else. Needs root and debootstrap.
# Usage: test_packages.sh RELEASE FOLDER_WITH_PACKAGES
set -euo pipefail

source=$(cd "$(dirname "$0")/.." && pwd)
# shellcheck source=scripts/bare_root.sh
. "$source/scripts/bare_root.sh"
release=$1
packages=$(realpath "$2")
root=$BARE_ROOTS/$release.packages
log=$BARE_ROOTS/packages.log

say() { printf '== %s\n' "$*"; }

fail() {
    printf 'FAILED: %s\n' "$*"
    exit 1
}

quietly() {
    "$@" >"$log" 2>&1 || {
        cat "$log"
        fail "$*"
    }
}

prepare() {
    make_root "$release" "$root"
    cp "$packages"/*.deb "$packages"/*.tar.gz "$root/tmp/"
    mkdir "$root/home/tester/photos"
    cp "$source"/samples/room_0[357].jpg "$root/home/tester/photos/"
    chown -R --reference="$root/home/tester" "$root/home/tester"
}

install_package() {
    say "install"
    quietly inside "$root" sh -c 'apt-get install -y --no-install-recommends /tmp/lumistrand_*.deb'
    [ -z "$(inside "$root" find /usr/lib/lumistrand /usr/bin/lumistrand ! -user root -o -perm /022 ! -type l)" ] ||
        fail "installed files that others than root may write"
}

test_headless() {
    say "merge, as a user"
    quietly as_tester "$root" lumistrand merge --group /home/tester/photos -o /home/tester/%.exr -o /home/tester/%.jpg
    [ -s "$root/home/tester/room_03.exr" ] || fail "no output"
    [ ! -e "$root/home/tester/.local" ] || fail "a merge left something with the user"
    quietly as_tester "$root" lumistrand-hdr-cli --version

    say "merge, from the tarball"
    quietly as_tester "$root" sh -c 'mkdir ~/unpacked && tar -xzf /tmp/lumistrand-*.tar.gz -C ~/unpacked --strip-components 1'
    quietly as_tester "$root" /home/tester/unpacked/bin/lumistrand merge --group /home/tester/photos -o '/home/tester/%.2.exr'
    cmp "$root/home/tester/room_03.exr" "$root/home/tester/room_03.2.exr"
}

# The window program on a display: it comes up with the photographs and ends when its window is closed.
test_window() {
    if [ ! -e "$root/usr/lib/lumistrand/lumistrand-hdr" ]; then
        say "no window program in these packages"
        return
    fi
    say "window, as a user"
    quietly inside "$root" apt-get install -y --no-install-recommends xvfb xauth xdotool openbox
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
    quietly as_tester "$root" xvfb-run -a sh /tmp/run_window.sh
    [ -e "$root/home/tester/.local/share/lumistrand/HDRLog.log" ] || fail "no log in the user's folder"
    [ -z "$(inside "$root" find /usr/lib/lumistrand -newer /tmp/run_window.sh)" ] || fail "files of the package were changed"
}

remove_package() {
    say "remove"
    mkdir -p "$root/home/tester/.local/share/lumistrand"
    echo mine >"$root/home/tester/.local/share/lumistrand/lsConfigHDR.xml.mine"
    quietly inside "$root" apt-get purge -y lumistrand
    local left
    left=$(inside "$root" find /usr /etc /var/lib -path /var/lib/dpkg -prune -o -name '*lumistrand*' -print)
    [ -z "$left" ] || fail "left behind: $left"
    [ -s "$root/home/tester/.local/share/lumistrand/lsConfigHDR.xml.mine" ] || fail "the user's folder is gone"
}

prepare
install_package
test_headless
test_window
remove_package
rm -rf "$root"
say "passed"
