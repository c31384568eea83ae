#!/usr/bin/env bash
# Runs a program on a virtual display of its own. Usage: with_display.sh none|openbox PROGRAM ARGUMENTS...
set -euo pipefail

manager=$1
shift
home=$(mktemp -d)
server=
cleanup() {
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    wait 2>/dev/null || true
    rm -rf "$home"
}
trap cleanup EXIT

mkdir -m 700 "$home/runtime"
export HOME=$home XDG_RUNTIME_DIR=$home/runtime NO_AT_BRIDGE=1 GSETTINGS_BACKEND=memory GDK_BACKEND=x11
# Two clicks of a test in one place are two clicks; with the toolkit's 400 ms every one of them would have to wait.
mkdir -p "$home/.config/gtk-3.0"
printf '[Settings]\ngtk-double-click-time=50\n' >"$home/.config/gtk-3.0/settings.ini"

# becomes COMMAND...: waits until it succeeds.
becomes() {
    local i
    for ((i = 0; i < 200; ++i)); do
        "$@" >/dev/null 2>&1 && return
        sleep 0.05
    done
    echo "with_display.sh: waited in vain for: $*" >&2
    return 1
}

# The server chooses a display that nobody has, so that many of these may start at once.
mkfifo "$home/display"
Xvfb -displayfd 3 -screen 0 1600x1200x24 -nolisten tcp 3<>"$home/display" >/dev/null 2>&1 &
server=$!
read -r -t 20 number <"$home/display"
export DISPLAY=:$number
if [ "$manager" != none ]; then
    export LS_TEST_WINDOW_MANAGER=$manager
    "$manager" >/dev/null 2>&1 &
    becomes xdotool get_desktop
fi
"$@"
