# shellcheck shell=bash
# What a script starts and ends again, and a display that nobody sees.  To be sourced behind common.sh.

started=()  # the processes to end, in the order of their start

Runs() { kill -0 "$1" 2>/dev/null; }
Ended() { ! Runs "$1"; }

# End PROCESS: politely, and by force when that takes over 10 seconds.
End() {
    kill "$1" 2>/dev/null || true
    WaitFor 10 Ended "$1" || kill -KILL "$1" 2>/dev/null || true
    wait "$1" 2>/dev/null || true
}

# EndStarted: newest first, what the script has noted as started and nothing else: the number of a process that
# has been waited for may be another's by now.
EndStarted() {
    local i
    for ((i = ${#started[@]} - 1; i >= 0; --i)); do
        if jobs -p | grep -qx "${started[i]}"; then
            End "${started[i]}"
        fi
    done
}

# StartDisplay FOLDER: with a window manager; both leave their logs in the folder.
StartDisplay() {
    unset WAYLAND_DISPLAY
    Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset 3>"$1/display" 2>"$1/xvfb.log" &
    started+=("$!")
    WaitFor 20 test -s "$1/display" || Fail "Xvfb does not start: $(tail -n 3 "$1/xvfb.log")"
    DISPLAY=:$(<"$1/display")
    export DISPLAY
    openbox >"$1/openbox.log" 2>&1 &
    started+=("$!")
    WaitFor 20 WindowManagerRuns || Fail "openbox does not start: $(tail -n 3 "$1/openbox.log")"
}

WindowManagerRuns() { xdotool get_num_desktops >/dev/null 2>&1; }

# FreePort [BUT]: a port that nobody has; another may take it before the console does, which then says so.
FreePort() {
    local candidate
    for _ in {1..100}; do
        candidate=$((20000 + RANDOM % 10000))
        if [[ $candidate != "${1:-}" ]] && ! PortTaken "$candidate"; then
            echo "$candidate"
            return
        fi
    done
    Fail "no free UDP port among a hundred"
}
