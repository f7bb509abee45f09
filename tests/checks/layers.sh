#!/usr/bin/env bash
# The layers: no Windows name in the portable ones, and no include against the arrows.
# Prints "PASS name" or "FAIL name: why" lines.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../../tools/common.sh"

portable='util raster formenv headless turndial forms channels control host/plan host/hits'

# What each folder may include from besides itself; "-" is nothing.
declare -A allowed=(
    [util]='-' [raster]='util' [formenv]='raster util' [headless]='formenv raster util'
    [turndial]='formenv raster util' [forms]='formenv raster util' [channels]='raster util'
    [control]='channels forms turndial formenv raster util' [host/plan]='util' [host/hits]='host/plan util'
    [win32]='turndial formenv raster util' [com]='util'
    [automation]='com win32 control channels forms turndial formenv raster util' [host]='host/hits host/plan'
)

windows_headers='(win[a-z]*|ole[a-z0-9]*|oa[a-z]+|obj[a-z]+|unknwn|ocidl|docobj|comdef|comutil|comm[a-z]+|shl[a-z]+'
windows_headers+='|shellapi|tchar|richedit|exdisp|activscp|uxtheme|dwmapi|versionhelpers|excpt|io|direct|process)\.h|wrl/.*'
windows_names='HWND|HDC|HGDIOBJ|HBITMAP|HBRUSH|HPEN|HFONT|HRGN|HMENU|HICON|HCURSOR|HINSTANCE|HMODULE|HMONITOR|HGLOBAL'
windows_names+='|HANDLE|HKEY|HPALETTE|HRESULT|BSTR|_bstr_t|VARIANT|VARIANTARG|VARIANT_BOOL|_variant_t|SAFEARRAY|CComPtr'
windows_names+='|OLE_COLOR|OLECHAR|COLORREF|LPC?W?STR|LPCTSTR|LPTSTR|LPARAM|WPARAM|LRESULT|DWORD|UINT|BOOL|WINAPI|APIENTRY'
windows_names+='|CALLBACK|STDMETHODCALLTYPE|IUnknown|IDispatch|IPicture|IFont|ComPtr|GUID|CLSID|IID|REFIID|REFCLSID|DISPID'
windows_names+='|LOGFONTW?|BITMAPINFO(HEADER)?|BITMAPFILEHEADER|WNDPROC|GetLastError|MessageBoxW?|_?WIN32|_WIN64|__MINGW32__'
windows_names+='|_MSC_VER|__stdcall|__declspec'

# sources DIR: the C++ files below; for host without those of host/plan and host/hits, which are layers of their own.
sources() {
    [[ -d $1 ]] || return 0
    find "$1" -name generated -prune -o \( -name '*.cpp' -o -name '*.h' \) -print | sort |
        if [[ $1 == host ]]; then grep -vE '^host/(plan|hits)/' || true; else cat; fi
}

# The file with its comments blanked, each line kept as a line.
without_comments() {
    perl -0777 -pe 's{("(?:\\.|[^"\\\n])*"|\x27(?:\\[^\n]{1,9}?|[^\x27\\\n])\x27)|(//[^\n]*|/\*.*?\*/)}
                     {defined $1 ? $1 : join("", $2 =~ /\n/g)}gsex' "$1"
}

windows_mentions() {
    local folder=$1 file
    local pattern="^\s*#\s*include\s*[<\"]($windows_headers)[>\"]|(^|[^A-Za-z0-9_])($windows_names)([^A-Za-z0-9_]|$)"
    while read -r file; do
        without_comments "$file" | grep -nE "$pattern" | sed "s|^|$file:|" || true
    done < <(sources "$folder")
}

# Layer of an include's path: the longest folder of ours that it begins with; empty for a header that is not ours.
layer_of() {
    case $1 in
        host/plan/* | host/hits/*) printf '%s' "${1%/*}" ;;
        */*) [[ -z ${allowed[${1%%/*}]:-} ]] || printf '%s' "${1%%/*}" ;;
    esac
}

# May a file in FOLDER hold this include? FORM is < or ", BESIDE the folder of the file itself.
include_allowed() {
    local folder=$1 form=$2 path=$3 beside=$4 layer
    [[ $path != *.cpp ]] || return 1
    layer=$(layer_of "$path")
    if [[ -n $layer ]]; then
        [[ $layer == "$folder" || " ${allowed[$folder]} " == *" $layer "* ]]
    elif [[ $path == kvBandscope.h ]]; then
        # The header that is generated from the interface's IDL.
        [[ $folder == host || $folder == automation ]]
    elif [[ $form == '<' ]]; then
        true
    else
        # Folders that are no layer (tests, bench) and ways around the include root are refused, neighbours are not.
        [[ $path != */* && -f $beside/$path ]]
    fi
}

upward_includes() {
    local folder=$1 file line
    local pattern='^([0-9]+):[[:space:]]*#[[:space:]]*include[[:space:]]*([<"])([^>"]+)'
    while read -r file; do
        while read -r line; do
            [[ $line =~ $pattern ]] || continue
            include_allowed "$folder" "${BASH_REMATCH[2]}" "${BASH_REMATCH[3]}" "${file%/*}" ||
                printf '%s:%s: %s may not include %s\n' "$file" "${BASH_REMATCH[1]}" "$folder" "${BASH_REMATCH[3]}"
        done < <(without_comments "$file" | grep -nE '^\s*#\s*include' || true)
    done < <(sources "$folder")
}

# violations TREE: a line for each.
violations() (
    cd "$1"
    for folder in $portable; do
        windows_mentions "$folder"
    done
    for folder in "${!allowed[@]}"; do
        upward_includes "$folder"
    done | sort
)

# The check is worth nothing if it catches nothing: a small tree of good and bad files, and what must be said of it.
fixture() {
    local tree=$1
    mkdir -p "$tree"/{util,raster,formenv,headless,channels,control,win32,com,automation,host/plan,host/hits}
    printf '// Not an HWND, and no windows.h.\n/* HDC\n BSTR */\n#include <string>\nint HWNDs = 1'"'"'000; // it'"'"'s\n' \
        >"$tree/util/Good.h"
    printf '#include "util/Good.h"\n#include "Neighbour.h"\n' >"$tree/util/Good.cpp"
    printf 'int neighbour;\n' >"$tree/util/Neighbour.h"
    printf '#pragma once\n#include <windows.h>\n' >"$tree/util/Header.h"
    printf '\n\nusing Window = HWND;\n' >"$tree/control/Type.cpp"
    printf '#ifdef _WIN32\n#endif\n' >"$tree/host/plan/Guard.cpp"
    printf '#include "control/Type.h"\n' >"$tree/formenv/Up.cpp"
    printf '#include "win32/Gdi.h"\n#include "formenv/Canvas.h"\n' >"$tree/control/Up.cpp"
    printf '#include <windows.h>\n#include "automation/Module.h"\nHWND window;\n' >"$tree/win32/Up.cpp"
    printf '#include "kvBandscope.h"\n#include "host/plan/Plan.h"\n#include "util/Good.h"\n' >"$tree/host/Up.cpp"
    printf '#include "../control/Type.h"\n#include "util/Good.h"\n#include "raster/Canvas.h"\n' \
        >"$tree/host/plan/Up.cpp"
    printf '#include "host/plan/Plan.h"\n#include "util/Good.h"\n#include "host/MainWindow.h"\n' \
        >"$tree/host/hits/Up.cpp"
    printf '#include "host/hits/Hit.h"\n' >"$tree/host/plan/Hits.cpp"
    printf '#include "control/Up.cpp"\n' >"$tree/control/Source.cpp"
    # Each room against the next one up, and the doubles of the tests in a product.
    printf '#include "formenv/Widget.h"\n#include "util/Good.h"\n' >"$tree/raster/Up.cpp"
    printf '#include "control/Type.h"\n#include "raster/Canvas.h"\n' >"$tree/channels/Up.cpp"
    printf '#include "channels/Store.h"\n#include "formenv/Widget.h"\n' >"$tree/headless/Up.cpp"
    printf '#include <windows.h>\n#include "control/Type.h"\n#include "win32/Gdi.h"\n' >"$tree/com/Up.cpp"
    printf '#include "headless/Platform.h"\n#include "com/Bstr.h"\n' >"$tree/automation/Double.cpp"
    cat >"$tree/expected" <<'END'
automation/Double.cpp:1: automation may not include headless/Platform.h
channels/Up.cpp:1: channels may not include control/Type.h
com/Up.cpp:2: com may not include control/Type.h
com/Up.cpp:3: com may not include win32/Gdi.h
control/Source.cpp:1: control may not include control/Up.cpp
control/Type.cpp:3:using Window = HWND;
control/Up.cpp:1: control may not include win32/Gdi.h
formenv/Up.cpp:1: formenv may not include control/Type.h
headless/Up.cpp:1: headless may not include channels/Store.h
host/Up.cpp:3: host may not include util/Good.h
host/hits/Up.cpp:3: host/hits may not include host/MainWindow.h
host/plan/Guard.cpp:1:#ifdef _WIN32
host/plan/Hits.cpp:1: host/plan may not include host/hits/Hit.h
host/plan/Up.cpp:1: host/plan may not include ../control/Type.h
host/plan/Up.cpp:3: host/plan may not include raster/Canvas.h
raster/Up.cpp:1: raster may not include formenv/Widget.h
util/Header.h:2:#include <windows.h>
win32/Up.cpp:2: win32 may not include automation/Module.h
END
}

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fixture "$scratch"
if difference=$(diff <(sort "$scratch/expected") <(violations "$scratch" | sort)); then
    say "PASS layers-catches-violations"
else
    say "FAIL layers-catches-violations: the check's own examples come out differently:"$'\n'"$difference"
fi

found=$(violations "$ROOT")
count=$(cd "$ROOT" && for folder in "${!allowed[@]}"; do sources "$folder"; done | wc -l)
if ((count == 0)); then
    say "FAIL layers: no source file found"
elif [[ -z $found ]]; then
    say "PASS layers"
else
    say "FAIL layers: $(wc -l <<<"$found") violation(s):"$'\n'"$found"
fi
