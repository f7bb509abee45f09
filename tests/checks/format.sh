#!/usr/bin/env bash
# Every C++ file is formatted as .clang-format says. To repair one: clang-format -i FILE.
# Prints "PASS name" or "FAIL name: why" lines.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../../tools/common.sh"
cd "$ROOT"

# Tracked files and new ones that are not ignored; outside of a checkout, all but what is built.
files() {
    if git -c safe.directory="$ROOT" rev-parse --is-inside-work-tree >/dev/null 2>&1; then
        git -c safe.directory="$ROOT" ls-files --cached --others --exclude-standard '*.cpp' '*.h'
    else
        find . \( -path ./build -o -path ./out \) -prune -o \( -name '*.cpp' -o -name '*.h' \) -print
    fi | sort -u | while read -r file; do [[ ! -f $file ]] || printf '%s\n' "$file"; done
}

mapfile -t all < <(files)
if ((${#all[@]} == 0)); then
    say "FAIL format: no C++ file found"
elif report=$(printf '%s\0' "${all[@]}" | xargs -0 -P2 -n16 clang-format --dry-run -Werror 2>&1); then
    say "PASS format"
else
    names=$(sed -nE 's/^([A-Za-z0-9_./-]+):[0-9]+:[0-9]+: error:.*/\1/p' <<<"$report" | sort -u | paste -sd ' ')
    say "FAIL format: ${names:-$report}"
fi
