#!/usr/bin/env bash
# clang-tidy on the portable layers. A file that was found clean is not looked at again until it, a header of ours that
# it includes, the checks' list or the tool changes: build/tidy-cache/ holds a mark for each.
# Prints "PASS name" or "FAIL name: why" lines.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../../tools/common.sh"
cd "$ROOT"

cache=build/tidy-cache
database=build/native/compile_commands.json
layers=()
for layer in util raster formenv headless turndial forms channels control host/plan host/hits; do
    [[ ! -d $layer ]] || layers+=("$layer")
done

# tidy_one FILE KEY: prints what clang-tidy has to say, or leaves the mark.
tidy_one() {
    local report
    if report=$(clang-tidy --quiet -p build/native "$1" 2>&1); then
        touch "build/tidy-cache/$2"
    else
        printf 'FAIL tidy-%s:\n%s\n' "$1" "$(grep -v 'warnings\? generated\|Suppressed\|^Use -' <<<"$report")"
    fi
}
if [[ ${1:-} == --one ]]; then
    tidy_one "$2" "$3"
    exit 0
fi

declare -A hashes=() includes=()

# Reads the hash and our own includes of every file in the layers, each with one program for all files.
read_sources() {
    local hash name file path
    while read -r hash name; do
        hashes[$name]=$hash
    done < <(sha256sum "$@")
    while IFS=$'\t' read -r file path; do
        # A name without folder is a neighbour's.
        [[ $path == */* ]] || path=${file%/*}/$path
        includes[$file]+=" $path"
    done < <(grep -HE '^\s*#\s*include\s*"' "$@" | sed -E 's/^([^:]+):\s*#\s*include\s*"([^"]+)".*/\1\t\2/')
}

# key_of FILE BASE: one hash over BASE, the file and all headers of ours that it includes directly or indirectly.
key_of() {
    local -A seen=()
    local queue=("$1") file next
    while ((${#queue[@]})); do
        file=${queue[0]}
        queue=("${queue[@]:1}")
        [[ -z ${seen[$file]:-} && -n ${hashes[$file]:-} ]] || continue
        seen[$file]=1
        for next in ${includes[$file]:-}; do
            queue+=("$next")
        done
    done
    {
        printf '%s\n' "$2"
        for file in "${!seen[@]}"; do
            printf '%s %s\n' "$file" "${hashes[$file]}"
        done | sort
    } | sha256sum | cut -d ' ' -f 1
}

if [[ ! -f $database ]]; then
    say "FAIL tidy: there is no $database: run tools/build native first"
    exit 0
fi
mapfile -t sources < <(find "${layers[@]}" -name '*.cpp' | sort)
mapfile -t headers < <(find "${layers[@]}" -name '*.h' | sort)
if ((${#sources[@]} == 0)); then
    say "FAIL tidy: no source file found"
    exit 0
fi
mkdir -p "$cache"
read_sources "${sources[@]}" ${headers[@]+"${headers[@]}"}
base=$({ clang-tidy --version; cat .clang-tidy; } | sha256sum)

work=() failed=0
for file in "${sources[@]}"; do
    if ! grep -qF "/$file\"" "$database"; then
        say "FAIL tidy-$file: not in $database: is it built?"
        failed=1
        continue
    fi
    key=$(key_of "$file" "$base")
    [[ -e $cache/$key ]] || work+=("$file" "$key")
done
report=''
if ((${#work[@]})); then
    report=$(printf '%s\0' "${work[@]}" | xargs -0 -P "$(nproc)" -n 2 bash "${BASH_SOURCE[0]}" --one)
fi
if [[ -n $report ]]; then
    say "$report"
elif ((!failed)); then
    say "PASS tidy"
fi
