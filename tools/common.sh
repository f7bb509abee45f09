# shellcheck shell=bash
# Functions that the commands share. This file is sourced, never run.
ROOT=$(cd -P "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
home=~ # when HOME is not set, bash takes it from the user database
CACHE=${XDG_CACHE_HOME:-$home/.cache}/kvbandscope
WINE32_TREE=$CACHE/wine32-tree
NEWER_WINE_TREE=$CACHE/wine-newer-tree
NEWER_WINE=/usr/lib/x86_64-linux-gnu/wine # the programs of the newer Wine, inside its tree
BENCHMARK_SOURCE=$CACHE/benchmark-source # cmake/benchmark.cmake searches there
PASCAL_SOURCES=$CACHE/pascal-sources     # see tools/pascal
PREFIXES=${KV_WINEPREFIX_ROOT:-$ROOT/build/wine}

say() { printf '%s\n' "$*"; }
warn() { printf '%s: %s\n' "${0##*/}" "$*" >&2; }
die() {
    warn "$*"
    exit 1
}

# as_root COMMAND [ARGS...]: runs COMMAND through sudo unless the user is already root.
as_root() {
    if ((EUID == 0)); then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        die "$1 needs root: run this command as root, or install sudo"
    fi
}

# make_dirs DIR...: like mkdir -p, with an additional message when a folder cannot be created.
make_dirs() { mkdir -p "$@" || die "cannot create $*"; }
