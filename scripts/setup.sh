# What ./lumistrand and ./test share: installing what is missing, configuring and building. To be sourced,
# with ROOT set to the top of the source tree. Everything that is printed here goes to the error stream.
# shellcheck shell=bash
# shellcheck disable=SC2034 # the scripts that source this file use the lists of packages

BUILD_PACKAGES="g++ cmake ninja-build ccache pkg-config libwxgtk3.2-dev libopenexr-dev libexiv2-dev
    libtiff-dev libtinyxml-dev libhwy-dev libopenblas-dev libx11-dev gettext"
RUN_PACKAGES="fonts-dejavu-core adwaita-icon-theme librsvg2-common"
TEST_PACKAGES="libgtest-dev libgmock-dev libbenchmark-dev libjpeg-dev xvfb openbox xdotool locales
    parallel dpkg-dev file libxml2-utils"
FUZZ_PACKAGES="clang libclang-rt-dev"
ARM64_PACKAGES="mmdebstrap g++-aarch64-linux-gnu qemu-user"
LINT_PACKAGES="clang-format clang-tidy shellcheck desktop-file-utils appstream man-db"

# Precompiled headers are only cached if ccache may trust them.
export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime

# Another clone of these sources finds what this one compiled.
export CCACHE_BASEDIR=$ROOT

# Of the script that sources this file.
ARGUMENTS=("$@")

say() { printf '%s\n' "$*" >&2; }

die() {
    say "$*"
    exit 1
}

missing_packages() {
    local package
    for package in "$@"; do
        case "$(dpkg-query -W -f '${Status}' "$package" 2>/dev/null)" in
        *' installed') ;;
        *) printf '%s ' "$package" ;;
        esac
    done
}

as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

# Root only installs what is missing, and goes on as the owner of the tree: what root builds, its owner couldn't
# build again, and a program that root started would leave settings that its owner's can't write.
become_owner() {
    local owner home
    owner=$(stat -c %u "$ROOT")
    if [ "$(id -u)" != 0 ] || [ "$owner" = 0 ]; then
        return
    fi
    home=$(getent passwd "$owner" | cut -d : -f 6)
    say "Going on as the owner of $ROOT, $(stat -c %U "$ROOT")."
    exec setpriv --reuid "$owner" --regid "$(stat -c %g "$ROOT")" --clear-groups \
        env -u XDG_RUNTIME_DIR HOME="${home:-/}" "$0" "${ARGUMENTS[@]}"
}

# apt_get LOG ARGUMENT...: apt-get, with its output in a file, and as soon as others are done with the package system: right after the
# first start a system installs its upgrades by itself.
apt_get() {
    local log=$1 deadline=$((SECONDS + 300)) waiting=
    shift
    until as_root env DEBIAN_FRONTEND=noninteractive LC_ALL=C apt-get -q "$@" >"$log" 2>&1 </dev/null; do
        grep -q 'Could not get lock\|Unable to acquire\|Unable to lock' "$log" && [ $SECONDS -lt $deadline ] || return
        [ -n "$waiting" ] || say "The package system is busy; waiting for it, up to five minutes ..."
        waiting=yes
        sleep 3
    done
}

# install_packages PURPOSE PACKAGE...: installs those that are missing. A stamp in the build folder keeps a
# second call from asking the package system again.
install_packages() {
    local purpose=$1 stamp
    shift
    stamp=$ROOT/build/.packages-$(printf '%s' "$*" | cksum | cut -d ' ' -f 1)
    [ -e "$stamp" ] || install_missing "$purpose" "$@"
    become_owner
    mkdir -p "$ROOT/build"
    : >"$stamp"
}

install_missing() {
    local purpose=$1 missing log
    shift
    command -v apt-get >/dev/null || die "This script installs packages with apt-get, as on Debian." \
        "Elsewhere install these yourself, and build with CMake: $*"
    missing=$(missing_packages "$@")
    [ -n "$missing" ] || return 0
    say "Installing what is needed to $purpose: $missing"
    log=$(mktemp)
    # shellcheck disable=SC2086 # one word per package
    if ! apt_get "$log" update || ! apt_get "$log" install -y --no-install-recommends $missing; then
        cat "$log" >&2
        rm -f "$log"
        die "Installing failed. With a network, root can do it:" \
            "apt-get update && apt-get install -y --no-install-recommends $missing"
    fi
    rm -f "$log"
}

# configure PRESET TESTS: makes the build folder of a preset; TESTS is ON, or empty to leave the choice as is.
configure() {
    local preset=$1 tests=$2 folder=$ROOT/build/$1
    if [ -e "$folder/build.ninja" ]; then
        [ -z "$tests" ] && return
        grep -q "^LS_BUILD_TESTS:BOOL=$tests\$" "$folder/CMakeCache.txt" && return
    fi
    mkdir -p "$folder"
    (cd "$ROOT" && cmake --preset "$preset" ${tests:+-DLS_BUILD_TESTS=$tests}) >"$folder/configure.log" 2>&1 ||
        { cat "$folder/configure.log" >&2; die "Configuring failed."; }
}

# build PRESET TARGET...: brings targets up to date; on a terminal one line shows how far it is.
build() {
    local folder=$ROOT/build/$1
    shift
    ninja -C "$folder" -n "$@" 2>/dev/null | grep -q 'no work to do' && return
    say "Building in ${folder#"$ROOT"/} ..."
    if [ -t 2 ]; then
        NINJA_STATUS='[%f/%t] ' ninja -C "$folder" "$@" >&2
    else
        ninja -C "$folder" --quiet "$@" >&2
    fi || die "The build failed."
}
