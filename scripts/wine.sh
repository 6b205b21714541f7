# shellcheck shell=bash
# Windows programs under Wine, in a prefix of their own: never the user's.  To be sourced behind common.sh.

unset WINEPREFIX

# PrepareWine FOLDER: the prefix that later calls of wine use; made where it is missing.
PrepareWine() {
    export WINEPREFIX=$PWD/$1 WINEDEBUG=-all
    # Without the offers to install what no program here needs, and without menu entries for the user.
    export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe="
    if [[ -e $WINEPREFIX/.prepared ]]; then
        return
    fi
    Say "Making a Wine prefix"
    local log=$WINEPREFIX.log font
    rm -rf "$WINEPREFIX"
    mkdir -p "$(dirname "$WINEPREFIX")"
    env -u DISPLAY timeout 120 wine wineboot --init >"$log" 2>&1 || Fail "$(tail -n 5 "$log")"
    # The fonts of the dialogs, which would be a serif otherwise.
    for font in "MS Shell Dlg" "MS Shell Dlg 2" "Segoe UI" Tahoma; do
        env -u DISPLAY timeout 60 wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\FontSubstitutes' \
            /v "$font" /d "DejaVu Sans" /f >>"$log" 2>&1 || Fail "$(tail -n 5 "$log")"
    done
    # Where there is no display, windows that nobody sees.
    env -u DISPLAY timeout 60 wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d x11,null /f >>"$log" 2>&1 ||
        Fail "$(tail -n 5 "$log")"
    # The running desktop came up without these settings.
    wineserver -k || true
    touch "$WINEPREFIX/.prepared"
}

# KeepWineRunning: starts what all Wine programs share (desktop, services) apart from the first test, whose
# output would stay open as long as they run.  Without a display, until EndWine.
KeepWineRunning() {
    env -u DISPLAY wine notepad >/dev/null 2>&1 &
    env -u DISPLAY wine rundll32 user32.dll,MessageBeep >/dev/null 2>&1 || true  # until the desktop is there
}

# EndWineSession: as logging off does, which asks the programs and lets them save.
EndWineSession() { timeout 60 wine wineboot --end-session --force || true; }

# EndWine: whatever still runs in the prefix.
EndWine() {
    if [[ -n ${WINEPREFIX:-} ]]; then
        wineserver -k 2>/dev/null || true
    fi
}
