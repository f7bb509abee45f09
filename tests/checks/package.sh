#!/usr/bin/env bash
# The packages, made of the programs that the tests have built: what is in them, and that their bytes depend on nothing
# but the source; that a C++ host compiles with nothing but a package; that the installers install, upgrade and remove
# the control, and register what the control registers itself. Both architectures run at once, in prefixes of their own.
#   tests/checks/package.sh [FOLDER]    FOLDER has the builds x64 and x86, otherwise build
# Prints "PASS name" or "FAIL name: why" lines.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../../tools/common.sh"
source "$ROOT/tests/package/prefix.sh"
cd "$ROOT"

builds=$(realpath "${1:-build}")
work=$ROOT/build/package-check
version=$(sed -nE 's/^project\(kvBandscope VERSION ([0-9.]+) .*/\1/p' CMakeLists.txt)
older=0.9.8
epoch=1700000000
export KV_WINEPREFIX_ROOT=$work/wine

# judge NAME COMMAND...: PASS when the command succeeds and prints nothing, otherwise FAIL with what it has printed.
judge() {
    local title=package-$arch-$1 said
    shift
    if said=$("$@" 2>&1) && [[ -z $said ]]; then
        say "PASS $title"
    else
        say "FAIL $title: ${said:-$* failed}"
    fi
}

# pack FOLDER VERSION: packages of that version, of the same programs.
pack() {
    local old=''
    [[ $2 == "$version" ]] || old=--old
    /usr/bin/python3 -B "$ROOT/tools/packaging/pack.py" --arch "$arch" --build "$builds/$arch" --version "$2" \
        --registration "$work/$arch-registration" --epoch "$epoch" --out "$1" --tested $old
}

make_packages() {
    wine "$builds/$arch/kv_registration_list.exe" '[INSTALLDIR]kvBandscope.ocx' >"$work/$arch-registration"
    pack "$packages" "$version"
    pack "$packages" "$older"
}

# Packed again, elsewhere and at another time, the packages have the same bytes.
same_again() {
    local file
    pack "$work/$arch-again" "$version"
    for file in "$work/$arch-again"/*; do
        cmp "$file" "$packages/${file##*/}"
    done
}

# Where widl has written the time into a type library there are a fixed text and a zero.
has_fixed_times() {
    /usr/bin/python3 - "$1" <<'END'
import sys
data = open(sys.argv[1], "rb").read()
place = data.find(b"Created by WIDL")
sys.exit(place < 0 or b" at Thu Jan  1 00:00:00 1970\nWW\x13\0\0\0\0\0WW" not in data[place:place + 80])
END
}

# No path or time of the build is in the files.
no_traces() {
    local file
    for file in "$unpacked/kvBandscope.ocx" "$unpacked/cpp/kvBandscope.tlb"; do
        has_fixed_times "$file" || say "the type library in ${file##*/} has the time of its build"
    done
    while read -r file; do
        ! grep -qaF -e "$ROOT/" -e "$builds/" "$file" || say "${file##*/} has a path of the build"
        ! LC_ALL=C grep -qaE "[[:space:]][0-9:]{8} $(date +%Y)" "$file" || say "${file##*/} has a time"
    done < <(find "$unpacked" -type f)
    for file in "$unpacked"/*.ocx "$unpacked"/*.exe; do
        [[ $(x86_64-w64-mingw32-objdump -p "$file") == *'Time/Date'*'Thu Jan  1 00:00:00 1970'* ]] ||
            say "${file##*/} has the time of its build"
    done
}

# Every link in the pages leads to a file in the package, and nothing is loaded from a network.
working_links() {
    local page link
    while read -r page; do
        while read -r link; do
            [[ $link != *:* ]] || say "${page##*/} needs a network: $link"
            [[ -e ${page%/*}/$link ]] || say "${page##*/} leads to nothing: $link"
        done < <(grep -oE '(href|src)="[^"#]+' "$page" | sed -E 's/^[a-z]+="//')
    done < <(find "$unpacked" -name '*.html')
    (($(find "$unpacked" -name '*.html' | wc -l) > 4)) || say "pages are missing"
}

right_version() {
    local package property
    for package in "$packages/$name$suffix".msi "$packages/$name"-user.msi; do
        property=$(msiinfo export "$package" Property | sed -nE 's/^ProductVersion\t([0-9.]+)\r?$/\1/p')
        [[ $property == "$version" ]] || say "${package##*/} has version $property"
    done
    grep -qF "<description>kvBandscope $version</description>" "$unpacked/kvBandscope.manifest" || say "manifest"
    grep -qF "kvBandscope-$version-x64.msi" "$unpacked/README.html" || say "README.html"
}

# The header alone, and the example by the line in the guide, in a folder that has the package only.
compiles_alone() {
    local line compiler=x86_64-w64-mingw32-g++-posix
    line=$(sed -n "/$compiler/,/<\/code>/{s/<[^>]*>//g; s/\\\\$//; p}" "$unpacked/docs/host-guide.html" | tr '\n' ' ')
    [[ $line == "$compiler "*FirstPicture.cpp* ]] || say "the guide has no line to compile by: $line"
    if [[ $arch == x86 ]]; then
        compiler=i686-w64-mingw32-g++-posix
        line=${line/x86_64/i686}
    fi
    cd "$unpacked"
    "$compiler" -std=c++20 -Wall -Wextra -Werror -fsyntax-only -x c++ -include cpp/kvBandscope.h /dev/null
    "$compiler" -std=c++20 -municode -fsyntax-only -I cpp examples/cpp/SpectrumWindow.cpp
    $line
    (wine FirstPicture.exe kvBandscope.manifest first.bmp) >"$work/$arch-cpp.log" 2>&1 || say "no picture was saved"
}

# Two pictures of one channel, drawn by a C++ program without registration and by a script with it.
equal_pictures() {
    cmp "$unpacked/first.bmp" "$work/$arch-script.bmp"
    [[ $(identify -format '%w %k' "$unpacked/first.bmp") =~ ^[0-9]{3,}\ ([3-9]|[0-9]{2,})$ ]] || say "an empty picture"
}

run_script() {
    local status=0 folder said saved
    folder=$(cd "$1" && pwd -P)
    said=$(wine cscript //nologo "$(windows_path "$folder/examples/scripts/first-picture.vbs")") || status=$?
    ((status == 42)) || say "exit code $status: $said"
    saved=$(sed -nE 's/^Picture saved as C:(.*), [0-9]+ x .*$/\1/p' <<<"${said//$'\r'/}")
    [[ $saved == *.BMP ]] || return 1
    cp "$drive${saved//\\//}" "$work/$arch-script.bmp"
    # The scratch folder, and the log in the folder of the host program.
    rm -rf "$(dirname "$drive${saved//\\//}")" "$drive"/windows/system32/[Kk][Vv]*.[Tt][Xx][Tt]
}

run_host() {
    local picture=$work/$arch-host.bmp
    rm -f "$picture"
    wine "$1/BandscopeHost.exe" --plan "$(windows_path "$1/examples/plans/gmrs.csv")" \
        --save "$(windows_path "$picture")" --quit || say "exit code $?"
    (($(identify -format '%k' "$picture") > 5)) || say "an empty picture"
}

# has_files FOLDER VERSION: the files of that package are in the folder, and no others but the log of the sample host.
has_files() { diff -r -x '[Kk][Vv]*.[Tt][Xx][Tt]' "${unpacked%/*}/kvBandscope-$2-$arch" "$1"; }

one_product() {
    local found
    found=$(uninstall_entries | grep -c DisplayVersion || true)
    [[ $found == 1 ]] || say "$found versions are installed"
    uninstall_entries | grep -q "\"DisplayVersion\"=\"$1\"" || say "the installed version is not $1"
}

same_registration() {
    diff <(classes installed "$1") <(classes registered "$1")
    (($(classes installed "$1" | grep -c kvBandscope) > 20)) || say "no classes can be read"
}

# installs_and_removes SCOPE SUFFIX FOLDER REGSVR32-OPTIONS...
installs_and_removes() {
    local scope=$1 suffix=$2 folder=$3
    shift 3
    judge "$scope-install" install "kvBandscope-$older-$arch$suffix"
    judge "$scope-old-files" has_files "$folder" "$older"
    # The 32-bit and the 64-bit Wine of Debian 12 do not look for classes of a user.
    [[ $scope == user ]] || judge "$scope-script" run_script "$folder"
    judge "$scope-sample-host" run_host "$folder"
    judge "$scope-upgrade" install "kvBandscope-$version-$arch$suffix"
    judge "$scope-new-files" has_files "$folder" "$version"
    judge "$scope-refuses-older" refuses "kvBandscope-$older-$arch$suffix"
    take_picture installed
    judge "$scope-one-product" one_product "$version"
    judge "$scope-remove" remove "kvBandscope-$version-$arch$suffix"
    take_picture removed
    judge "$scope-leaves-nothing" same_pictures before removed
    # The same files in the same folder, registered by the module itself.
    cp -r "$unpacked" "$folder"
    judge "$scope-registers-itself" regsvr32 "$@" "$folder/kvBandscope.ocx"
    take_picture registered
    judge "$scope-same-registration" same_registration "$scope"
    judge "$scope-unregisters" regsvr32 /u "$@" "$folder/kvBandscope.ocx"
    rm -rf "$folder"
    take_picture removed
    judge "$scope-unregistered" same_pictures before removed
}

# Packages of both architectures in one prefix: what one of them leaves is what the other one needs. Wine keeps the
# entries that Windows shares between the architectures apart. What the second package has left in its part is removed
# when it is installed alone and removed once more.
side_by_side() {
    local first=$1 second=$2
    judge "with-$second" install "kvBandscope-$version-$first"
    judge "with-$second-second" install "kvBandscope-$version-$second"
    take_picture both
    judge "with-$second-remove" remove "kvBandscope-$version-$second"
    take_picture one
    judge "with-$second-stays" diff <(view both "$first") <(view one "$first")
    [[ $first != x64 ]] || judge "with-$second-script" run_script "$drive/Program Files/kvBandscope"
    judge "with-$second-first-removed" remove "kvBandscope-$version-$first"
    judge "with-$second-again" install "kvBandscope-$version-$second"
    judge "with-$second-removed" remove "kvBandscope-$version-$second"
    take_picture removed
    judge "with-$second-leaves-nothing" same_pictures before removed
}

test_one() {
    arch=$1 suffix='' name=kvBandscope-$version-$1
    prefix=$KV_WINEPREFIX_ROOT/$arch drive=$KV_WINEPREFIX_ROOT/$arch/drive_c
    packages=$work/$arch unpacked=$work/$arch-unpacked/$name
    # The control writes its log into the current folder.
    make_dirs "$work/$arch-current"
    cd "$work/$arch-current"
    start_prefix
    judge make make_packages
    [[ -e $packages/$name-user.msi ]] || return 0
    judge same-again same_again
    mkdir -p "${unpacked%/*}"
    judge unpack /usr/bin/python3 -m zipfile -e "$packages/$name.zip" "${unpacked%/*}"
    judge unpack-older /usr/bin/python3 -m zipfile -e "$packages/kvBandscope-$older-$arch.zip" "${unpacked%/*}"
    judge no-traces no_traces
    judge links working_links
    judge version right_version
    take_picture before
    installs_and_removes machine '' "$drive/Program Files/kvBandscope" /s
    installs_and_removes user -user "$(user_programs)/kvBandscope$([[ $arch == x64 ]] || echo ' (x86)')" /s /n /i:user
    judge compiles-alone compiles_alone
    judge equal-pictures equal_pictures
}

test_both() {
    arch=x64 prefix=$KV_WINEPREFIX_ROOT/x64 drive=$KV_WINEPREFIX_ROOT/x64/drive_c packages=$work/x64
    cp "$work"/x86/*.msi "$packages" || return 0
    cd "$work/x64-current"
    side_by_side x64 x86
    side_by_side x86 x64
}

rm -rf "$work"/{x64,x86}*
make_dirs "$work"
source "$ROOT/tools/display"
trap 'stop_prefixes; display_stop' EXIT
display_start --virtual --plain
runs=()
for arch in x64 x86; do
    (test_one "$arch") >"$work/$arch.log" 2>&1 &
    runs+=("$!")
done
wait "${runs[@]}" || true
test_both >"$work/both.log" 2>&1
cat "$work"/{x64,x86,both}.log
if ! grep -qv '^PASS ' "$work"/{x64,x86,both}.log; then
    touch "$KV_WINEPREFIX_ROOT"/{x64,x86}/.unchanged
fi
