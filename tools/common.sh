# shellcheck shell=bash
# What the commands share. Sourced, never run.
ROOT=$(cd -P "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
home=~ # from the user database when HOME is not set
CACHE=${XDG_CACHE_HOME:-$home/.cache}/kvbandscope
WINE32_TREE=$CACHE/wine32-tree
BENCHMARK_SOURCE=$CACHE/benchmark-source # cmake/benchmark.cmake looks there
PREFIXES=${KV_WINEPREFIX_ROOT:-$ROOT/build/wine}

say() { printf '%s\n' "$*"; }
warn() { printf '%s: %s\n' "${0##*/}" "$*" >&2; }
die() {
    warn "$*"
    exit 1
}

# as_root COMMAND [ARGS...]: through sudo unless already root.
as_root() {
    if ((EUID == 0)); then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        die "needs root for: $1; run it as root, or install sudo"
    fi
}

# make_dirs DIR...: like mkdir -p, with a message of its own when the folder cannot be written.
make_dirs() { mkdir -p "$@" || die "cannot create $*"; }
