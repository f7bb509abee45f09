#!/usr/bin/env bash
# The version is in CMakeLists.txt and nowhere else, and everything that is built has it. The change log describes it.
# Prints "PASS name" or "FAIL name: why" lines.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../../tools/common.sh"
cd "$ROOT"

version=$(sed -nE 's/^project\(kvBandscope VERSION ([0-9]+\.[0-9]+\.[0-9]+) .*/\1/p' CMakeLists.txt)

# report NAME COMPLAINT
report() {
    if [[ -z $2 ]]; then
        say "PASS version-$1"
    else
        say "FAIL version-$1: $2"
    fi
}

# The lines outside of the change log that give the version, or the version of a resource as numbers.
mentions() {
    local text=${version//./\\.}
    find . \( -path ./build -o -path ./out -o -path ./.git \) -prune -o \
        -type f ! -name '*.png' ! -name CHANGELOG.md -print | sort |
        xargs grep -nE "(^|[^0-9.])$text([^0-9.]|\.0[^0-9]|$)|^ *(FILE|PRODUCT)VERSION +[0-9]" |
        grep -vF './CMakeLists.txt:2:project(kvBandscope VERSION ' || true
}

# The version in the resource of a program: two numbers of 32 bits that follow the mark of the structure.
resource_version() {
    /usr/bin/python3 - "$1" <<'END'
import struct, sys
data = open(sys.argv[1], "rb").read()
place = data.find(struct.pack("<II", 0xFEEF04BD, 0x10000))
numbers = struct.unpack_from("<IIII", data, place + 8) if place >= 0 else (0, 0, 0, 0)
words = [word for number in numbers for word in (number >> 16, number & 0xFFFF)]
print(".".join(map(str, words[:4])), ".".join(map(str, words[4:])))
END
}

built() {
    local arch file found
    for arch in x64 x86; do
        for file in kvBandscope.ocx BandscopeHost.exe FirstPicture.exe SpectrumWindow.exe; do
            found=$(resource_version "build/$arch/$file")
            [[ $found == "$version.0 $version.0" ]] || say "build/$arch/$file has $found"
            [[ $(strings -el "build/$arch/$file" | grep -cFx "$version") == 2 ]] ||
                say "build/$arch/$file does not say $version as FileVersion and ProductVersion"
        done
        grep -qF "<description>kvBandscope $version</description>" "build/$arch/kvBandscope.manifest" ||
            say "build/$arch/kvBandscope.manifest"
        grep -qaF "name=\"kvBandscope.BandscopeHost\" version=\"$version.0\"" "build/$arch/BandscopeHost.exe" ||
            say "the manifest in build/$arch/BandscopeHost.exe"
    done
}

# Each version has a section with its date, the present one comes first.
change_log() {
    local heads
    heads=$(sed -nE 's/^## (.*)$/\1/p' CHANGELOG.md)
    [[ $(sed -n 1p <<<"$heads") == Unreleased ]] || say "\"Unreleased\" is not first"
    [[ $(sed -n 2p <<<"$heads") =~ ^${version//./\\.}\ -\ 20[0-9]{2}-[01][0-9]-[0-3][0-9]$ ]] ||
        say "$version is not next"
    ! sed 1d <<<"$heads" | grep -qvE '^[0-9]+\.[0-9]+\.[0-9]+ - [-0-9]{10}$' || say "a heading is no version"
}

if [[ -z $version ]]; then
    say "FAIL version: CMakeLists.txt has none"
    exit 0
fi
report once "$(mentions)"
report built "$(built)"
report change-log "$(change_log)"
