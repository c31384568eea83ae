# What the launchers of a source tree and of an installation share. To be sourced by one that has the functions die,
# usage, start_headless and start_window, and its own name in COMMAND.
# shellcheck shell=bash

# No argument can be longer: MAX_ARG_STRLEN of Linux, less the NUL.
LONGEST_ARGUMENT=131071

# file_argument PATH...: prints what the window program takes: a word and the absolute paths, joined by "|".
file_argument() {
    local LC_ALL=C argument=open path paths # LC_ALL: lengths in bytes
    mapfile -d '' -t paths < <(realpath -z -m -s -- "$@")
    for path in "${paths[@]}"; do
        case $path in
        *'|'*) die "The window can't open a path that holds the character \"|\". Please rename: $path" ;;
        esac
        argument+="|$path"
    done
    [ ${#argument} -le $LONGEST_ARGUMENT ] ||
        die "The window can't open so many photographs at once. Please open fewer, or merge them without it."
    printf '%s' "$argument"
}

require_display() {
    [ -n "${DISPLAY-}${WAYLAND_DISPLAY-}" ] ||
        die "The window needs a display. Without one: $COMMAND merge --help"
}

# launch ARGUMENT...: does what the command line says.
launch() {
    case ${1-} in
    -h | --help) usage ;;
    -V | --version) start_headless --version ;;
    merge)
        shift
        start_headless "$@"
        ;;
    --)
        shift
        start_window "$@"
        ;;
    -*) die "$1: no such option; see $COMMAND --help" ;;
    *) start_window "$@" ;;
    esac
}
