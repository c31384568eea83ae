#!/usr/bin/env bash
# How a first start installs what is missing: with a package system that is busy, without a network, as root in a tree
# of another user. Stand-ins take the place of the package system.
set -euo pipefail

source=$(cd "$(dirname "$0")/../../scripts" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin" "$work/tree"
chmod 755 "$work"
failed=0

fail() {
    printf '%s\n%s\n' "$1" "$(cat "$work/out")"
    failed=1
}

stand_in() {
    printf '#!/bin/sh\n%s\n' "$2" >"$work/bin/$1"
    chmod 755 "$work/bin/$1"
}

# shellcheck disable=SC2016 # the script expands them
printf '%s\n' 'set -euo pipefail; ROOT=$(dirname "$0"); . "$SETUP"' 'install_packages "test this" one two' \
    'printf "%s," "$(id -u)" "$@" >"$ROOT/build/done"' >"$work/tree/run"
stand_in dpkg-query 'echo "unknown ok not-installed"'
stand_in sudo 'exec "$@"'
stand_in sleep 'true'

# run: a first start. @return its exit code
run() {
    rm -rf "$work/tree/build"
    SETUP=$source/setup.sh PATH=$work/bin:$PATH bash "$work/tree/run" 'a b' c >"$work/out" 2>&1
}

# shellcheck disable=SC2016 # the stand-in expands them
stand_in apt-get 'n=$(cat '"$work"'/calls); echo $((n + 1)) >'"$work"'/calls
[ $n -gt 2 ] || { echo "E: Could not get lock /var/lib/dpkg/lock-frontend"; exit 100; }'
echo 0 >"$work/calls"
run || fail 'a busy package system is not waited for'
[ "$(grep -c 'is busy' "$work/out")" = 1 ] || fail 'no word, or too many, of a busy package system'

stand_in apt-get 'echo "E: Could not resolve the name"; exit 100'
! run || fail 'goes on without packages'
tail -n 1 "$work/out" | grep -q 'apt-get install -y --no-install-recommends one two' ||
    fail 'the last line does not say what to do'
[ ! -e "$work/tree/build" ] || fail 'a failed start leaves a build folder'

if [ "$(id -u)" = 0 ]; then
    chown -R 1:1 "$work/tree"
    stand_in dpkg-query '[ -e '"$work"'/installed ] && echo "install ok installed"; true'
    stand_in apt-get 'touch '"$work"'/installed'
    chmod 777 "$work"
    chmod 755 "$work/tree/run"
    sed -i '1i #!/bin/bash' "$work/tree/run"
    run || fail 'root can not start in the tree of another user'
    [ "$(cat "$work/tree/build/done")" = '1,a b,c,' ] || fail 'root does not go on as the owner of the tree'
    [ -z "$(find "$work/tree" -user root)" ] || fail 'root leaves files in the tree of another user'
fi
exit $failed
