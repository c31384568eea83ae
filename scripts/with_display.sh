#!/usr/bin/env bash
# Runs a program on a virtual display of its own. Usage: with_display.sh none|openbox PROGRAM ARGUMENTS...
set -euo pipefail

manager=$1
shift
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
mkdir -m 700 "$home/runtime"
export HOME=$home XDG_RUNTIME_DIR=$home/runtime NO_AT_BRIDGE=1 GSETTINGS_BACKEND=memory GDK_BACKEND=x11

# The window manager ends with its display.
inside='"$@"'
if [ "$manager" != none ]; then
    export LS_TEST_WINDOW_MANAGER=$manager
    inside="$manager >/dev/null 2>&1 & sleep 0.5; \"\$@\""
fi
xvfb-run -a -s '-screen 0 1600x1200x24 -nolisten tcp' bash -c "$inside" with_display "$@"
