#!/usr/bin/env bash
# The modules of both architectures describe the same interface, whichever architecture's programs read them.
# Prints "PASS name" or "FAIL name: why" lines.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../../tools/common.sh"

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# describe READER MODULE: the description, in a file of that name.
describe() {
    local file=Z:$ROOT/build/$2/kvBandscope.ocx
    "$ROOT/tools/wine" "$1" "$ROOT/build/$1/kv_typelib_dump.exe" "${file//\//\\}" \
        >"$scratch/$1-reads-$2" 2>"$scratch/errors" </dev/null ||
        printf 'not read: %s\n' "$(cat "$scratch/errors")" >"$scratch/$1-reads-$2"
    sed -i 's/\r$//' "$scratch/$1-reads-$2"
}

describe x64 x64
for pair in 'x64 x86' 'x86 x64' 'x86 x86'; do
    read -r reader module <<<"$pair"
    describe "$reader" "$module"
    if difference=$(diff "$scratch/x64-reads-x64" "$scratch/$reader-reads-$module"); then
        say "PASS typelib-$reader-reads-$module"
    else
        say "FAIL typelib-$reader-reads-$module: not what x64 reads of its own module:"$'\n'"$difference"
    fi
done

# Equal files prove nothing unless the interface stands in them: its last member, as a dual interface has it, twice.
if [[ $(grep -c ' lColorSpecBack "' "$scratch/x64-reads-x64" || true) == 2 ]] &&
    [[ $(grep -cE '^  [0-9]+ kind 1 .* slot ([789]|[1-9][0-9]) ' "$scratch/x64-reads-x64" || true) == 142 ]]; then
    say "PASS typelib-complete"
else
    say "FAIL typelib-complete: 142 functions of three function tables are expected in:"$'\n'"$(cat "$scratch/x64-reads-x64")"
fi

# Visual Basic knows no unsigned number but stdole's color, and designers know a color by that alias only: 11 functions
# take or return one, each described twice.
color='OLE_COLOR alias \{66504301-BE0F-101A-8BBB-00AA00300CAB\} of \{00020430-0000-0000-C000-000000000046\}'
colors=$(grep -cE "^    \S+ $color\*? flags |\": $color\$" "$scratch/x64-reads-x64" || true)
# Types 16 to 23 are the 8-bit number, all unsigned ones, both 64-bit ones and those of the machine's width. IDispatch's
# own functions, whose numbers begin at 1610612736, have some.
unknown=$(awk '/^  [0-9]+ kind / { own = $1 < 1610612736 }
    own && (/^    [^ ]+ (1[6-9]|2[0-3])\*? flags / || /": (1[6-9]|2[0-3])\*?$/)' "$scratch/x64-reads-x64")
if [[ $colors == 22 && -z $unknown ]]; then
    say "PASS typelib-types"
else
    say "FAIL typelib-types: $colors instead of 22 colors of stdole, and numbers that Visual Basic lacks: $unknown"
fi
