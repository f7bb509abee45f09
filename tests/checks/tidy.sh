#!/usr/bin/env bash
# clang-tidy on the portable layers, in the units that the build compiles: several files in one, or a single file. A unit
# that was found clean is not looked at again until one of its files, a header of ours that it includes, the checks' list
# or the tool changes: build/tidy-cache/ holds a mark for each.
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

# tidy_one UNIT KEY: prints what clang-tidy has to say, or leaves the mark. Units include their files.
# clang-tidy does not know all options of the build's compiler, and would report them.
tidy_one() {
    local report
    if report=$(clang-tidy --quiet --checks=-bugprone-suspicious-include -p build/native \
        --extra-arg=-Wno-unused-command-line-argument "$1" 2>&1); then
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

# key_of BASE FILE...: one hash over BASE, the files and all headers of ours that they include directly or indirectly.
key_of() {
    local -A seen=()
    local base=$1 queue=("${@:2}") file next
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
        printf '%s\n' "$base"
        for file in "${!seen[@]}"; do
            printf '%s %s\n' "$file" "${hashes[$file]}"
        done | sort
    } | sha256sum | cut -d ' ' -f 1
}

# files_of UNIT: the source files that are compiled in a unit of the database, relative to ROOT.
files_of() {
    if [[ $1 == */Unity/* ]]; then
        sed -n "s|^#include \"$ROOT/\(.*\)\"$|\1|p" "$1"
    else
        printf '%s\n' "${1#"$ROOT"/}"
    fi
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

declare -A unit_of=()
mapfile -t units < <(sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' "$database" | sort)
work=() failed=0
for unit in "${units[@]}"; do
    mapfile -t files < <(files_of "$unit")
    [[ -n ${hashes[${files[0]:-}]:-} ]] || continue
    for file in "${files[@]}"; do
        unit_of[$file]=$unit
    done
    key=$(key_of "$base" "${files[@]}")
    [[ -e $cache/$key ]] || work+=("$unit" "$key")
done
for file in "${sources[@]}"; do
    if [[ -z ${unit_of[$file]:-} ]]; then
        say "FAIL tidy-$file: not in $database: is it built?"
        failed=1
    fi
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
