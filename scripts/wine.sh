# shellcheck shell=bash
# Functions to run Windows programs under Wine in a separate prefix, never in the user's own.  Sourced after common.sh.

unset WINEPREFIX

# PrepareWine FOLDER: makes the prefix unless it exists; later calls of wine use it.
PrepareWine() {
    export WINEPREFIX=$PWD/$1 WINEDEBUG=-all
    # Prevents offers to install .NET and a browser, and entries in the user's menu.
    export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe="
    if [[ -e $WINEPREFIX/.prepared ]]; then
        return
    fi
    Say "Creating a Wine prefix"
    local log=$WINEPREFIX.log font
    rm -rf "$WINEPREFIX"
    mkdir -p "$(dirname "$WINEPREFIX")"
    env -u DISPLAY timeout 120 wine wineboot --init >"$log" 2>&1 ||
        Fail "wineboot failed: $(tail -n 5 "$log")"
    # Without these substitutes Wine draws the dialogs with a serif font.
    for font in "MS Shell Dlg" "MS Shell Dlg 2" "Segoe UI" Tahoma; do
        env -u DISPLAY timeout 60 wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\FontSubstitutes' \
            /v "$font" /d "DejaVu Sans" /f >>"$log" 2>&1 ||
            Fail "Wine could not substitute the font $font: $(tail -n 5 "$log")"
    done
    # Without a display, Wine uses the driver "null", which creates invisible windows.
    env -u DISPLAY timeout 60 wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d x11,null /f >>"$log" 2>&1 ||
        Fail "Wine could not set its graphics driver: $(tail -n 5 "$log")"
    # Ends the running Wine desktop, because it was started without these settings.
    wineserver -k || true
    touch "$WINEPREFIX/.prepared"
}

# Starts the processes that all Wine programs share (desktop, services), without a display.  They run until EndWine.  If
# the first test started them instead, they would inherit its output and keep it open, and CTest would wait for them.
KeepWineRunning() {
    env -u DISPLAY wine notepad >/dev/null 2>&1 &
    env -u DISPLAY wine rundll32 user32.dll,MessageBeep >/dev/null 2>&1 || true  # returns once the desktop runs
}

# Ends the Windows session as logging off does: asks the programs first, so that they can save their data.
EndWineSession() { timeout 60 wine wineboot --end-session --force || true; }

# Ends everything that still runs in the prefix.
EndWine() {
    if [[ -n ${WINEPREFIX:-} ]]; then
        wineserver -k 2>/dev/null || true
    fi
}
