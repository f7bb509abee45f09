#!/usr/bin/env bash
# The built files need libraries of the system only, and of these nothing that an older system lacks. The module exports
# what a control's module has to export. Every file may be loaded at any address, runs no data as code, and has no
# section that is both writable and executable.
# Prints "PASS name" or "FAIL name: why" lines.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../../tools/common.sh"

system_libraries=' kernel32 msvcrt user32 gdi32 ole32 oleaut32 advapi32 shell32 comctl32 comdlg32 shlwapi uxtheme version msimg32 oleacc '
exports='DllCanUnloadNow DllGetClassObject DllInstall DllRegisterServer DllUnregisterServer'

dump() { x86_64-w64-mingw32-objdump -p "$1"; }

imports_of() { dump "$1" | sed -nE 's/^\s*DLL Name: (.*)$/\1/p'; }

# library!name of everything that a file imports by name; the library in small letters and without its ending.
names_of() {
    dump "$1" | awk '
        /^\tDLL Name: / { library = tolower($3); sub(/\.dll$/, "", library); next }
        /^The Export Tables|^The Function Table/ { over = 1 }
        library && !over && NF == 3 && $1 ~ /^[0-9a-f]+$/ && $2 ~ /^[0-9]+$/ { print library "!" $3 }'
}

# A program without a manifest gets version 5.82 of the common controls: what that version has by name in every Windows.
# Names with Dpi came with Windows 8.1 and 10: they are looked up at run time.
check_names() {
    local name=import-names-$1-$2 file=$ROOT/build/$1/$2 names missing
    names=$(names_of "$file")
    missing=$(grep -E '^comctl32!|Dpi' <<<"$names" | grep -vxE 'comctl32!InitCommonControls(Ex)?' || true)
    if [[ $(grep -c '^user32!' <<<"$names" || true) -lt 20 ]]; then
        say "FAIL $name: the names cannot be read"
    elif [[ -n $missing ]]; then
        say "FAIL $name: not in every supported Windows:" $missing
    else
        say "PASS $name"
    fi
}

# The names in the export table, sorted, on one line.
exports_of() {
    dump "$1" | sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/p' | sed -nE 's/^\s*\[ *[0-9]+\] (\S+).*$/\1/p' |
        sort | paste -sd ' '
}

check_imports() {
    local name=imports-$1-$2 file=$ROOT/build/$1/$2 library short count=0 strange=''
    if [[ ! -f $file ]]; then
        say "FAIL $name: there is no build/$1/$2"
        return
    fi
    while read -r library; do
        short=${library,,}
        [[ $system_libraries == *" ${short%.dll} "* ]] || strange+=" $library"
        ((count += 1))
    done < <(imports_of "$file")
    if ((count == 0)); then
        say "FAIL $name: no import table can be read"
    elif [[ -n $strange ]]; then
        say "FAIL $name: imports from outside of the system:$strange"
    else
        say "PASS $name"
    fi
}

check_exports() {
    local name=exports-$1 file=$ROOT/build/$1/kvBandscope.ocx found
    if [[ ! -f $file ]]; then
        say "FAIL $name: there is no build/$1/kvBandscope.ocx"
        return
    fi
    found=$(exports_of "$file")
    if [[ $found == "$exports" ]]; then
        say "PASS $name"
    else
        say "FAIL $name: exports \"$found\", not \"$exports\""
    fi
}

# The marks that let the system protect a program against attacks. Without a table of relocations the first of them
# would have no effect.
check_marks() {
    local name=marks-$1-$2 file=$ROOT/build/$1/$2 found wanted='DYNAMIC_BASE NX_COMPAT' mark missing='' both
    [[ $1 == x86 ]] || wanted+=' HIGH_ENTROPY_VA'
    found=$(dump "$file" 2>/dev/null | sed -n '/^DllCharacteristics/,/^SizeOfStackReserve/p')
    for mark in $wanted; do
        grep -qw "$mark" <<<"$found" || missing+=" $mark"
    done
    [[ $(x86_64-w64-mingw32-objdump -h "$file" 2>/dev/null) == *' .reloc '* ]] || missing+=' .reloc'
    # The flags of a section are on the line after its name.
    both=$(x86_64-w64-mingw32-objdump -h "$file" 2>/dev/null |
        awk '$1 ~ /^[0-9]+$/ { name = $2; next } /CODE/ && !/READONLY/ { print name }')
    if [[ -n $missing ]]; then
        say "FAIL $name: not marked:$missing"
    elif [[ -n $both ]]; then
        say "FAIL $name: writable and executable:" $both
    else
        say "PASS $name"
    fi
}

for arch in x64 x86; do
    check_marks "$arch" kvBandscope.ocx
    check_marks "$arch" BandscopeHost.exe
    check_imports "$arch" kvBandscope.ocx
    check_imports "$arch" BandscopeHost.exe
    check_names "$arch" kvBandscope.ocx
    check_exports "$arch"
done
