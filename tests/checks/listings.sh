#!/usr/bin/env bash
# Each listing in the host author's guide is the file, or the part of one, that the line above it names, or is marked as
# not run. A part stands in its file between "// [name]" and "// [end]".
# To repair it: tests/checks/listings.sh --write
# Prints "PASS name" or "FAIL name: why" lines.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../../tools/common.sh"
cd "$ROOT"

guide=docs/host-guide.md

# part FILE [NAME]
part() {
    if [[ -z ${2:-} ]]; then
        cat "$1"
    else
        awk -v start="// [$2]" '$0 == "// [end]" { inside = 0 } inside { print } $0 == start { inside = 1 }' "$1"
    fi
}

language() {
    case $1 in
        *.cpp) printf cpp ;;
        *.vbs) printf vb ;;
        *.js) printf js ;;
        *) printf xml ;;
    esac
}

# The guide as it should be: a new block behind each mark in place of the one that stands there.
filled() {
    local line skipping=0 awaited=0 mark='^<!-- listing: ([^ ]+)( \[([^]]+)\])? -->$'
    while IFS= read -r line || [[ -n $line ]]; do
        if ((awaited)); then
            awaited=0
            if [[ $line == '```'* ]]; then
                skipping=1
                continue
            fi
        elif ((skipping)); then
            [[ $line != '```' ]] || skipping=0
            continue
        fi
        printf '%s\n' "$line"
        if [[ $line =~ $mark ]]; then
            printf '```%s\n' "$(language "${BASH_REMATCH[1]}")"
            part "${BASH_REMATCH[1]}" "${BASH_REMATCH[3]}"
            printf '```\n'
            awaited=1
        fi
    done <"$guide"
}

# Blocks under no mark, in sections that do not say that they are not run.
unmarked() {
    awk '/^## /   { said = 0 }
         /\*Not run here\.\*/ { said = 1 }
         /^```/   { if (!inside && !said && before !~ /^<!-- listing: /) print FNR ": " $0; inside = !inside }
                  { before = $0 }' "$guide"
}

scratch=$(mktemp)
trap 'rm -f "$scratch"' EXIT
filled >"$scratch"
if [[ ${1:-} == --write ]]; then
    cp "$scratch" "$guide"
    exit 0
fi
marks=$(grep -c '^<!-- listing: ' "$guide" || true)
if ((marks == 0)); then
    say "FAIL listings: no listing found"
elif difference=$(diff "$guide" "$scratch"); then
    say "PASS listings"
else
    say "FAIL listings: not what stands in the files:"$'\n'"$difference"
fi
if lines=$(unmarked) && [[ -z $lines ]]; then
    say "PASS listings-marked"
else
    say "FAIL listings-marked: neither from a file nor marked as not run: $lines"
fi
