# shellcheck shell=bash
# The Wine prefixes of tests/checks/package.sh, and pictures of what is in them. The caller sets arch, prefix, drive,
# packages and work.

wine() { "$ROOT/tools/wine" "$arch" "$@" 2>/dev/null </dev/null; }
windows_path() { printf 'Z:%s' "${1//\//\\}"; }

# A prefix is used again when the last run has left it as it was.
start_prefix() {
    [[ -e $prefix/.unchanged ]] || rm -rf --one-file-system "$prefix"
    rm -f "$prefix/.unchanged"
    # The first script registers the script host.
    printf 'WScript.Quit 0\n' >"$work/$arch-first.js"
    wine cscript //nologo "$(windows_path "$work/$arch-first.js")" >/dev/null
}

stop_prefixes() {
    for arch in x64 x86; do
        "$ROOT/tools/wine" "$arch" --stop || true
    done
}

msiexec() { wine msiexec "$1" "$(windows_path "$packages/$2.msi")" /qn; }
install() { msiexec /i "$1" || say "exit code $?"; }
remove() { msiexec /x "$1" || say "exit code $?"; }

# 67 is what is left of 1603, "fatal error", in an exit code.
refuses() {
    local status=0
    msiexec /i "$1" || status=$?
    ((status == 67)) || say "exit code $status"
}

# regsvr32 OPTIONS... MODULE
regsvr32() {
    local module=${*: -1:1}
    module=${module#"$drive"}
    wine regsvr32 "${@:1:$#-1}" "C:${module//\//\\}" || say "exit code $?"
}

# The folder for programs of the one user of the prefix.
user_programs() {
    local folders=("$drive"/users/*/AppData/Local)
    printf '%s' "${folders[0]}/Programs"
}

# Keys for things of many programs, which always exist in Windows. Wine makes and removes them while they are empty.
containers='Classes|Wow6432Node\\\\CLSID|Uninstall|Features|Products|UpgradeCodes|Components'

# take_picture NAME: the registry and the files, without what Wine writes at each start, empty containers, and folders
# that are always there in Windows. The files of the registry are complete when the server has ended. The next server is
# started here, because a program that starts one does not wait long for it when the machine is busy.
take_picture() {
    "$ROOT/tools/wine" "$arch" --stop
    local hive
    for hive in system user; do
        sed -E '/^(#time=|;;|"DriverDate)/d; s/^(\[.*\]) [0-9]+$/\1/' "$prefix/$hive.reg" |
            awk "BEGIN { RS = \"\"; ORS = \"\n\n\" } !/^\[[^\n]*\\\\($containers)\]\$/" >"$work/$arch-$1.$hive"
    done
    (cd "$drive" && find . ! -path './windows/Installer' ! -path './users/*/AppData/Local/Programs' | sort) \
        >"$work/$arch-$1.files"
    "$ROOT/tools/wine" "$arch" --serve
}

same_pictures() {
    local part
    for part in files system user; do
        diff "$work/$arch-$1.$part" "$work/$arch-$2.$part"
    done
}

# classes NAME SCOPE: what is below Software\Classes in a picture, without the records of Windows Installer.
classes() {
    local hive=system
    [[ $2 == machine ]] || hive=user
    awk 'BEGIN { RS = ""; ORS = "\n\n" }
         /^\[Software\\\\Classes/ && !/^\[Software\\\\Classes\\\\Installer/' "$work/$arch-$1.$hive"
}

# view NAME ARCH: the entries of the control for programs of an architecture, in the prefix of both. The paths of both
# modules are in the one type library.
view() {
    classes "$1" machine | awk -v want="$2" 'BEGIN { RS = ""; ORS = "\n\n" }
        /\\\\win(32|64)\]/ { if (/win64/ == (want == "x64")) print; next }
        (/Wow6432Node/) == (want == "x86") && /[kK][vV]Bandscope|221D1500-C8C3-4EFD-AE3C-0DE90FB9A204/'
}

uninstall_entries() {
    cat "$work/$arch-installed".{system,user} |
        awk 'BEGIN { RS = ""; ORS = "\n\n" } /CurrentVersion\\\\Uninstall\\\\.*kvBandscope/'
}
