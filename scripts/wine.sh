# shellcheck shell=bash
# Windows programs under Wine, in a prefix of their own: never the user's.  To be sourced behind common.sh.

# PrepareWine FOLDER: the prefix that later calls of wine use; made where it is missing.
PrepareWine() {
    export WINEPREFIX=$PWD/$1 WINEDEBUG=-all
    # Without the offers to install what no program here needs, and without menu entries for the user.
    export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe="
    if [[ -e $WINEPREFIX/.ready ]]; then
        return
    fi
    Say "Making a Wine prefix"
    local log=$WINEPREFIX.log font
    rm -rf "$WINEPREFIX"
    mkdir -p "$(dirname "$WINEPREFIX")"
    env -u DISPLAY wine wineboot --init >"$log" 2>&1 || Fail "$(tail -n 5 "$log")"
    # The fonts of the dialogs, which would be a serif otherwise.
    for font in "MS Shell Dlg" "MS Shell Dlg 2" "Segoe UI" Tahoma; do
        env -u DISPLAY wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\FontSubstitutes' \
            /v "$font" /d "DejaVu Sans" /f >>"$log" 2>&1 || Fail "$(tail -n 5 "$log")"
    done
    touch "$WINEPREFIX/.ready"
}

# EndWine: whatever still runs in the prefix.
EndWine() {
    if [[ -n ${WINEPREFIX:-} ]]; then
        wineserver -k 2>/dev/null || true
    fi
}
