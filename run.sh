#!/usr/bin/env bash
# Runs the console on a demonstration folder with a live feed.  See Usage below.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source scripts/common.sh
source scripts/display.sh

Usage() {
    cat <<'END'
usage: ./run.sh [--build | --help]

Sets up this machine, builds the console and runs it on the folder demo/ with a live feed of
notifications, by mailslot and by syslog; close the window (or press Ctrl+C here) to end all of it.
Without a display the same runs on an invisible one for some twenty seconds, in the folder
demo/headless/ that is made anew; the console is started twice, since it has to come back with what
it held.  That run leaves screenshots and summaries, and fails where something is missing.

  --build   only set up and build the preset release, everything in it
END
}

readonly bin=build/release/bin
readonly burst=210 steady=40
runtime=""
console=""
folder=demo  # where the console keeps its files
port=""      # on which it takes syslog; empty for nobody knows

CleanUp() {
    EndStarted
    if [[ -n $runtime ]]; then
        rm -rf "$runtime"
    fi
}

# The demonstration has a runtime folder of its own, so that it never meets the user's console.
# An absolute WAYLAND_DISPLAY keeps the way to the user's screen.
PrepareRuntime() {
    if [[ -n ${WAYLAND_DISPLAY:-} && $WAYLAND_DISPLAY != /* ]]; then
        export WAYLAND_DISPLAY=${XDG_RUNTIME_DIR:-}/$WAYLAND_DISPLAY
    fi
    runtime=$(mktemp -d)
    export XDG_RUNTIME_DIR=$runtime
}

# WriteSettings PORT: a settings file that is there stays as it is.
WriteSettings() {
    mkdir -p "$folder"
    if [[ ! -e $folder/thlisten.ini ]]; then
        printf '%s\n' '[General]' MessageViews=7 SoundOn=0 DateTime=0 Seperator=/ "SyslogUDPPort=$1" \
            >"$folder/thlisten.ini"
    fi
    rm -f "$folder"/{summary,sent,sent-syslog}.txt
}

# The port of the settings, where the feed may send to it.
FindPort() {
    port=$(sed -nE 's/^SyslogUDPPort *= *([0-9]+).*/\1/p' "$folder/thlisten.ini" | tail -n 1)
    if [[ -z $port || $port == 0 ]]; then
        Say "No SyslogUDPPort in $folder/thlisten.ini: feeding by mailslot alone"
        port=""
    elif PortTaken "$port"; then
        Say "UDP port $port is another program's: the console will ask; feeding by mailslot alone"
        port=""
    fi
}

ConsoleListens() {
    Runs "$console" || Fail "the console ended at its start"
    [[ -S $runtime/mailslot/TallyhornEngine ]] && { [[ -z $port ]] || PortTaken "$port"; }
}

StartConsole() {
    Say "Starting the console on the folder $folder/${port:+, with syslog on UDP port $port}"
    TALLYHORN_SUMMARY=$PWD/$folder/summary.txt "$bin/tallyhorn-console" --folder "$folder" &
    console=$!
    started+=("$console")
    WaitFor 20 ConsoleListens || Fail "the console does not listen after 20 seconds"
}

# Send FILE COUNT RATE SEED [OPTION...]: what was sent is added to FILE.
Send() {
    local file=$folder/$1 count=$2 rate=$3 seed=$4
    shift 4
    "$bin/tallyhorn-send" "$@" --demo --count "$count" --rate "$rate" --seed "$seed" >>"$file" 2>&1
}

# SendBoth COUNT RATE SEED: to the mailslot, and at the same time to the port where there is one.
SendBoth() {
    local syslog=""
    if [[ -n $port ]]; then
        Send sent-syslog.txt "$1" "$2" "$(($3 + 100))" --syslog "127.0.0.1:$port" &
        syslog=$!
    fi
    Send sent.txt "$@" || Fail "the feed by mailslot failed: $(tail -n 1 "$folder/sent.txt")"
    [[ -z $syslog ]] || wait "$syslog" ||
        Fail "the feed by syslog failed: $(tail -n 1 "$folder/sent-syslog.txt")"
}

ShowSummary() {
    Say "Sent:"
    cat "$folder"/sent*.txt
    Say "Received:"
    cat "$folder/summary.txt" || Fail "the console left no summary"
}

RunOnDisplay() {
    local feed feeds=()
    WriteSettings 5514
    FindPort
    StartConsole
    Say "Feeding a burst, then a few a second until the console ends"
    Say "More by hand: XDG_RUNTIME_DIR=$runtime $bin/tallyhorn-send --help"
    SendBoth "$burst" 2000 1
    "$bin/tallyhorn-send" --demo --rate 4 --seed 2 >>demo/sent.txt 2>&1 &
    feeds+=("$!")
    if [[ -n $port ]]; then
        "$bin/tallyhorn-send" --syslog "127.0.0.1:$port" --demo --rate 4 --seed 102 \
            >>demo/sent-syslog.txt 2>&1 &
        feeds+=("$!")
    fi
    started+=("${feeds[@]}")
    wait "$console" || Fail "the console ended with status $?"
    for feed in "${feeds[@]}"; do
        End "$feed"
    done
    ShowSummary
}

WindowShows() { xdotool search --all --onlyvisible --pid "$console" --name . >/dev/null 2>&1; }

EndConsole() {
    local status=0
    kill -TERM "$console"
    WaitFor 20 Ended "$console" || Fail "the console does not end on SIGTERM"
    wait "$console" || status=$?
    ((status == 0)) || Fail "the console ended with status $status"
}

# Sums FILE PATTERN: the sums of the two numbers that PATTERN finds in each line of it.
Sums() { sed -nE "s/$2/\1 \2/p" "$1" | awk '{ some += $1; more += $2 } END { print some + 0, more + 0 }'; }

# What was sent has to be received.  A text of several datagrams may be missing: the console drops
# one whose parts it reads all at once, as the protocol has it.
CheckMailslot() {
    local texts datagrams received
    read -r texts datagrams < <(Sums "$folder/sent.txt" '^sent ([0-9]+) texts?, ([0-9]+) datagrams?,.*')
    received=$(sed -nE 's/^NetBIOS ([0-9]+) received.*/\1/p' "$folder/summary.txt")
    ((texts == burst + steady)) || Fail "the feed sent $texts texts and not $((burst + steady))"
    ((${received:-0} >= 2 * texts - datagrams && ${received:-0} <= texts)) ||
        Fail "of $texts texts by mailslot the console received ${received:-none}"
}

# CheckSyslog RECEIVED: what the summary has to tell of what was sent.  An event type that the console
# does not know ("other") stands in a list and not in the tree.
CheckSyslog() {
    local sent others expected line
    read -r sent _ < <(Sums "$folder/sent-syslog.txt" '^sent ([0-9]+) datagrams?, ([0-9]+) bytes.*')
    read -r others _ < <(Sums "$folder/sent-syslog.txt" '^  other: ([0-9]+)()$')
    ((sent == burst + steady)) || Fail "the feed sent $sent datagrams and not $((burst + steady))"
    line=$(sed -n '/^Syslog /p' "$folder/summary.txt")
    expected="Syslog $1 received, $sent kept, rows: *, leaves: $((sent - others))"
    # shellcheck disable=SC2053  # the star is a pattern
    [[ $line == $expected ]] || Fail "expected of the console '$expected' but it says '$line'"
}

# Keys KEY...: pressed one after the other in the console's window.
Keys() { xdotool key --delay 60 "$@"; }

# By its path: other tools of that name may come first on PATH.
Screenshot() {
    sleep 0.7  # a page needs its moment to be painted
    /usr/bin/import -window root "$folder/$1.png" || Fail "no screenshot of $1"
}

TakeScreenshots() {
    Screenshot screenshot
    Keys alt+s
    Screenshot syslog
    Keys alt+y alt+d Home
    Screenshot tree-closed
    # Two alarms, each down to the notifications of its first computer.
    Keys Down Right Down Right Down Right
    xdotool type --delay 60 'Logon f'
    Keys Right Down Right Down Right Down
    Screenshot tree
    cmp -s "$folder/tree-closed.png" "$folder/tree.png" && Fail "the tree does not open by keyboard"
    return 0
}

# A second start has to bring back what the first had, and its end to write the same file.
CheckRestart() {
    cp "$folder/Backup.dat" "$folder/Backup.first"
    Say "Starting it again: what it kept has to come back"
    StartConsole
    WaitFor 20 WindowShows || Fail "the console shows no window at its second start"
    Keys alt+s
    Screenshot restarted
    EndConsole
    CheckSyslog 0
    cmp "$folder/Backup.first" "$folder/Backup.dat" || Fail "Backup.dat is not the same after a second start"
    Say "All came back, and Backup.dat is the same byte for byte"
}

RunHeadless() {
    Say "No display here: running under Xvfb for some twenty seconds"
    folder=demo/headless
    rm -rf "$folder"
    port=$(FreePort)
    WriteSettings "$port"
    StartDisplay "$runtime"
    StartConsole
    WaitFor 20 WindowShows || Fail "the console shows no window"
    Say "Feeding $burst at once, then $steady at 5 a second, by mailslot and by syslog"
    SendBoth "$burst" 2000 1
    SendBoth "$steady" 5 2
    sleep 2  # the console reads its mailslot by a timer
    TakeScreenshots
    EndConsole
    ShowSummary
    CheckMailslot
    CheckSyslog "$((burst + steady))"
    Say "Received and kept is what was sent"
    CheckRestart
    Say "The window as it was: $folder/screenshot.png, syslog.png, tree-closed.png, tree.png, restarted.png"
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
    PrepareRuntime
    if ((${#headless[@]} > 0)); then
        RunHeadless
    else
        RunOnDisplay
    fi
}

Main "$@"
