# shellcheck shell=bash
# Functions to end the processes that a script starts, and to run an invisible display.  Sourced after common.sh.

started=()  # the ids of the processes that EndStarted ends, in the order of their start

Runs() { kill -0 "$1" 2>/dev/null; }
Ended() { ! Runs "$1"; }

# End PROCESS: sends SIGTERM, and SIGKILL if the process still runs after 10 seconds.
End() {
    kill "$1" 2>/dev/null || true
    WaitFor 10 Ended "$1" || kill -KILL "$1" 2>/dev/null || true
    wait "$1" 2>/dev/null || true
}

# Ends the processes in `started`, the newest first.  Skips those that are no longer jobs of this shell, because the
# system may have given their ids to other processes.
EndStarted() {
    local i
    for ((i = ${#started[@]} - 1; i >= 0; --i)); do
        if jobs -p | grep -qx "${started[i]}"; then
            End "${started[i]}"
        fi
    done
}

# StartDisplay FOLDER: starts Xvfb and the window manager openbox, with their logs in the folder, and sets DISPLAY.
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

# FreePort [EXCEPT]: prints a free UDP port other than EXCEPT.  Another program may still take it before its use.
FreePort() {
    local candidate
    for _ in {1..100}; do
        candidate=$((20000 + RANDOM % 10000))
        if [[ $candidate != "${1:-}" ]] && ! PortTaken "$candidate"; then
            echo "$candidate"
            return
        fi
    done
    Fail "tried 100 UDP ports, and none was free"
}
