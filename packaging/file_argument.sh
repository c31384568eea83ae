# How the window program takes files. To be sourced by a launcher, which has a function die.
# shellcheck shell=bash

# No argument can be longer: MAX_ARG_STRLEN of Linux, less the NUL.
LONGEST_ARGUMENT=131071

# file_argument PATH...: prints a word and the absolute paths, joined by "|".
file_argument() {
    local LC_ALL=C argument=open path # LC_ALL: lengths in bytes
    for path in "$@"; do
        path=$(realpath -m -s -- "$path")
        case $path in
        *'|'*) die "The window can't open a path that holds the character \"|\". Please rename: $path" ;;
        esac
        argument+="|$path"
    done
    [ ${#argument} -le $LONGEST_ARGUMENT ] ||
        die "The window can't open so many photographs at once. Please open fewer, or merge them without it."
    printf '%s' "$argument"
}
