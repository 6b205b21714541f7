#!/usr/bin/env bash
# Runs the console on a demonstration folder with a live feed.  See Usage below.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source scripts/common.sh

Usage() {
    cat <<'END'
usage: ./run.sh [--build | --help]

Sets up this machine, builds the console and runs it on the folder demo/ with a live feed of
notifications; close the window (or press Ctrl+C here) to end both.  Without a display the same
runs on an invisible one for some ten seconds, and leaves demo/screenshot.png and a summary.

  --build   only set up and build the preset release, everything in it
END
}

readonly bin=build/release/bin
readonly burst=210 steady=40
runtime=""
console=""
started=()  # the processes to end, in the order of their start

Runs() { kill -0 "$1" 2>/dev/null; }
Ended() { ! Runs "$1"; }

# End PROCESS: politely, and by force when that takes over 10 seconds.
End() {
    kill "$1" 2>/dev/null || true
    WaitFor 10 Ended "$1" || kill -KILL "$1" 2>/dev/null || true
    wait "$1" 2>/dev/null || true
}

# Ends, newest first, what this script started and nothing else.
CleanUp() {
    local i
    for ((i = ${#started[@]} - 1; i >= 0; --i)); do
        End "${started[i]}"
    done
    if [[ -n $runtime ]]; then
        rm -rf "$runtime"
    fi
}

# WaitFor SECONDS COMMAND...: false when the command has not succeeded within that time.
WaitFor() {
    local end=$((SECONDS + $1))
    shift
    until "$@"; do
        ((SECONDS < end)) || return 1
        sleep 0.1
    done
}

# The demonstration has a runtime folder of its own, so that it never meets the user's console.
# An absolute WAYLAND_DISPLAY keeps the way to the user's screen.
PrepareFolders() {
    if [[ -n ${WAYLAND_DISPLAY:-} && $WAYLAND_DISPLAY != /* ]]; then
        export WAYLAND_DISPLAY=${XDG_RUNTIME_DIR:-}/$WAYLAND_DISPLAY
    fi
    runtime=$(mktemp -d)
    export XDG_RUNTIME_DIR=$runtime
    mkdir -p demo
    if [[ ! -e demo/thlisten.ini ]]; then
        printf '%s\n' '[General]' MessageViews=7 SoundOn=0 DateTime=0 Seperator=/ >demo/thlisten.ini
    fi
    rm -f demo/summary.txt demo/sent.txt demo/screenshot.png
}

ConsoleListens() {
    Runs "$console" || Fail "the console ended at its start"
    [[ -S $runtime/mailslot/TallyhornEngine ]]
}

StartConsole() {
    Say "Starting the console on the folder demo/"
    TALLYHORN_SUMMARY=$PWD/demo/summary.txt "$bin/tallyhorn-console" --folder demo &
    console=$!
    started+=("$console")
    WaitFor 20 ConsoleListens || Fail "the console does not listen after 20 seconds"
}

# Send COUNT RATE SEED
Send() {
    "$bin/tallyhorn-send" --demo --count "$1" --rate "$2" --seed "$3" >>demo/sent.txt ||
        Fail "the feed failed"
}

ShowSummary() {
    Say "Sent:"
    cat demo/sent.txt
    Say "Received:"
    cat demo/summary.txt || Fail "the console left no summary"
}

RunOnDisplay() {
    StartConsole
    Say "Feeding a burst, then a few a second until the console ends"
    Say "More by hand: XDG_RUNTIME_DIR=$runtime $bin/tallyhorn-send --help"
    Send "$burst" 2000 1
    "$bin/tallyhorn-send" --demo --count 1000000 --rate 4 --seed 2 >>demo/sent.txt 2>&1 &
    local feed=$!
    started+=("$feed")
    wait "$console" || Fail "the console ended with status $?"
    End "$feed"
    ShowSummary
}

StartDisplay() {
    unset WAYLAND_DISPLAY
    Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$runtime/display" 2>"$runtime/xvfb.log" &
    started+=("$!")
    WaitFor 20 test -s "$runtime/display" || Fail "Xvfb does not start: $(tail -n 3 "$runtime/xvfb.log")"
    DISPLAY=:$(<"$runtime/display")
    export DISPLAY
    openbox >"$runtime/openbox.log" 2>&1 &
    started+=("$!")
    WaitFor 20 WindowManagerRuns || Fail "openbox does not start: $(tail -n 3 "$runtime/openbox.log")"
}

WindowManagerRuns() { xdotool get_num_desktops >/dev/null 2>&1; }
WindowShows() { xdotool search --all --onlyvisible --pid "$console" --name . >/dev/null 2>&1; }

EndConsole() {
    local status=0
    kill -TERM "$console"
    WaitFor 20 Ended "$console" || Fail "the console does not end on SIGTERM"
    wait "$console" || status=$?
    ((status == 0)) || Fail "the console ended with status $status"
}

# What was sent has to be received.  A text of several datagrams may be missing: the console drops
# one whose parts it reads all at once, as the protocol has it.
CheckReceived() {
    local texts=0 datagrams=0 someTexts someDatagrams received
    while read -r someTexts someDatagrams; do
        texts=$((texts + someTexts))
        datagrams=$((datagrams + someDatagrams))
    done < <(sed -nE 's/^sent ([0-9]+) texts?, ([0-9]+) datagrams?,.*/\1 \2/p' demo/sent.txt)
    received=$(sed -nE 's/^NetBIOS ([0-9]+) received.*/\1/p' demo/summary.txt)
    ((texts == burst + steady)) || Fail "the feed sent $texts texts and not $((burst + steady))"
    ((${received:-0} >= 2 * texts - datagrams && ${received:-0} <= texts)) ||
        Fail "of $texts texts the console received ${received:-none}"
}

RunHeadless() {
    Say "No display here: running under Xvfb for some ten seconds"
    StartDisplay
    StartConsole
    WaitFor 20 WindowShows || Fail "the console shows no window"
    Say "Feeding $burst at once, then $steady at 5 a second"
    Send "$burst" 2000 1
    Send "$steady" 5 2
    sleep 2  # the console reads its mailslot by a timer
    # By its path: other tools of that name may come first on PATH.
    /usr/bin/import -window root demo/screenshot.png
    EndConsole
    ShowSummary
    CheckReceived
    Say "The window as it was: demo/screenshot.png"
}

BuildOnly() {
    EnsurePackages run
    Build release
}

Main() {
    case ${1:-} in
        --help | -h) Usage; return ;;
        --build) BuildOnly; return ;;
        "") ;;
        *) Usage >&2; exit 2 ;;
    esac
    trap CleanUp EXIT
    trap 'exit 130' INT TERM HUP
    local headless=()
    if [[ -z ${DISPLAY:-}${WAYLAND_DISPLAY:-} ]]; then
        headless=(headless)
    fi
    EnsurePackages run "${headless[@]}"
    Build release tallyhorn-console tallyhorn-send
    PrepareFolders
    if ((${#headless[@]} > 0)); then
        RunHeadless
    else
        RunOnDisplay
    fi
}

Main "$@"
