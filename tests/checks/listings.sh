#!/usr/bin/env bash
# Each listing in the pages for host authors is the file, or the part of one, that the line above it names, or is marked
# as not run. A part is in its file between "// [name]" and "// [end]". Python examples must compile.
# To repair it: tests/checks/listings.sh --write
# Prints "PASS name" or "FAIL name: why" lines.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../../tools/common.sh"
cd "$ROOT"

pages=(docs/host-guide.md docs/{visual-basic,dotnet,python,pascal}.md)

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
        *.vbs | *.bas) printf vb ;;
        *.cs) printf csharp ;;
        *.pas) printf pascal ;;
        *.py) printf python ;;
        *.js) printf js ;;
        *) printf xml ;;
    esac
}

# filled PAGE: the page as it should be, with a new block behind each mark in place of the present one.
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
    done <"$1"
}

# unmarked PAGE: blocks under no mark, in sections that do not say that they are not run.
unmarked() {
    awk '/^## /   { said = 0 }
         /\*Not run here\.\*/ { said = 1 }
         /^```/   { if (!inside && !said && before !~ /^<!-- listing: /) print FNR ": " $0; inside = !inside }
                  { before = $0 }' "$1"
}

scratch=$(mktemp)
trap 'rm -f "$scratch"' EXIT
for page in "${pages[@]}"; do
    filled "$page" >"$scratch"
    if [[ ${1:-} == --write ]]; then
        cp "$scratch" "$page"
        continue
    fi
    name=$(basename "$page" .md)
    marks=$(grep -c '^<!-- listing: ' "$page" || true)
    if ((marks == 0)); then
        say "FAIL listings-$name: no listing found"
    elif difference=$(diff "$page" "$scratch"); then
        say "PASS listings-$name"
    else
        say "FAIL listings-$name: not what is in the files:"$'\n'"$difference"
    fi
    if lines=$(unmarked "$page") && [[ -z $lines ]]; then
        say "PASS listings-marked-$name"
    else
        say "FAIL listings-marked-$name: neither from a file nor marked as not run: $lines"
    fi
done
[[ ${1:-} != --write ]] || exit 0
for example in examples/python/*.py; do
    if said=$(python3 -c 'import sys; compile(open(sys.argv[1], encoding="utf-8").read(), *sys.argv[1:2], "exec")' \
        "$example" 2>&1); then
        say "PASS listings-compile-$(basename "$example" .py)"
    else
        say "FAIL listings-compile-$(basename "$example" .py): $said"
    fi
done
# A listing that no page shows would be an example that nothing explains.
for example in examples/{dotnet,pascal,python,scripts,vb6,vba}/*; do
    if grep -qF -e "listing: $example " -e "$(basename "$example")" "${pages[@]}"; then
        say "PASS listings-shows-$(basename "$example")"
    else
        say "FAIL listings-shows-$(basename "$example"): no page mentions $example"
    fi
done
