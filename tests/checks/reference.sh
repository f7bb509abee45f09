#!/usr/bin/env bash
# docs/reference.md is what the interface's IDL gives, and every member there is described with its unit and start value.
# To repair it: tools/reference.
# Prints "PASS name" or "FAIL name: why" lines.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../../tools/common.sh"
cd "$ROOT"

idl=automation/kvBandscope.idl
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

if complaints=$(tools/reference --check 2>&1); then
    say "PASS reference-complete"
else
    say "FAIL reference-complete: ${complaints}"
fi

if ! tools/reference --print >"$scratch/reference.md" 2>"$scratch/errors"; then
    say "FAIL reference-current: $(cat "$scratch/errors")"
elif difference=$(diff docs/reference.md "$scratch/reference.md"); then
    say "PASS reference-current"
else
    say "FAIL reference-current: docs/reference.md is not what tools/reference makes of the IDL:"$'\n'"$difference"
fi

# notices NAME SED-SCRIPT COMPLAINT: a spoilt copy of the IDL has to be complained about.
notices() {
    local name=$1 script=$2 complaint=$3 said
    sed -E "$script" "$idl" >"$scratch/spoilt.idl"
    if cmp -s "$idl" "$scratch/spoilt.idl"; then
        say "FAIL reference-notices-$name: the IDL has nothing to spoil"
    elif said=$(tools/reference --idl "$scratch/spoilt.idl" --check 2>&1); then
        say "FAIL reference-notices-$name: nothing was said"
    elif [[ $said != *"$complaint"* ]]; then
        say "FAIL reference-notices-$name: said \"$said\", not \"$complaint\""
    else
        say "PASS reference-notices-$name"
    fi
}
notices missing-help 's/\[id\(20\), helpstring\("[^"]*"\)\]/[id(20)]/' '_kvBandscope.ClearDisplay has no description'
notices missing-unit 's/(\[id\(41\), propget, .*) Unit: MHz\./\1/' '_kvBandscope.CursorVal has no Unit'
notices missing-start 's/ Start: 20\.//' '_kvBandscope.nGridX has no Start'
notices two-descriptions 's/(\[id\(31\), propput, .*helpstring\(")/\1The /' '_kvBandscope.GridColor is described in two ways'
notices missing-member '/\[id\(54\)/,+1d' '_kvBandscope has 70 members'
