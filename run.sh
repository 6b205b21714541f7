#!/usr/bin/env bash
# Builds the console and runs it with demonstration data.  See Usage below.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source scripts/common.sh
source scripts/display.sh

Usage() {
    cat <<'END'
usage: ./run.sh [--build | --help]

Installs missing packages, builds the console and runs it with its files in the folder demo/ and a
live feed of notifications by mailslot and by syslog.  Close the window or press Ctrl+C here to end it.

Without a display, the console runs under Xvfb for about twenty seconds, with its files in
demo/headless/, which is emptied first.  It is started twice, to check that the second start restores
all messages.  The run leaves screenshots and summaries there, and fails if a message is missing.

  --build   only install missing packages and build everything of the preset release
END
}

readonly bin=build/release/bin
readonly burst=210 steady=40
runtime=""
console=""
folder=demo  # the folder for the files of the console
port=""      # the UDP port for syslog; empty if syslog cannot be sent

CleanUp() {
    EndStarted
    if [[ -n $runtime ]]; then
        rm -rf "$runtime"
    fi
}

# Sets a separate XDG_RUNTIME_DIR, so that a console that the user already runs does not receive the feed.  A relative
# WAYLAND_DISPLAY refers to the old XDG_RUNTIME_DIR, so it is made absolute.
PrepareRuntime() {
    if [[ -n ${WAYLAND_DISPLAY:-} && $WAYLAND_DISPLAY != /* ]]; then
        export WAYLAND_DISPLAY=${XDG_RUNTIME_DIR:-}/$WAYLAND_DISPLAY
    fi
    runtime=$(mktemp -d)
    export XDG_RUNTIME_DIR=$runtime
}

# WriteSettings PORT: writes a settings file unless one exists, and removes the reports of the previous run.
WriteSettings() {
    mkdir -p "$folder"
    if [[ ! -e $folder/thlisten.ini ]]; then
        printf '%s\n' '[General]' MessageViews=7 SoundOn=0 DateTime=0 Seperator=/ "SyslogUDPPort=$1" \
            >"$folder/thlisten.ini"
    fi
    rm -f "$folder"/{summary,sent,sent-syslog}.txt
}

# Sets `port` to the UDP port in the settings file.  Sets it to an empty text if the file names no port or another
# program uses that port.
FindPort() {
    port=$(sed -nE 's/^SyslogUDPPort *= *([0-9]+).*/\1/p' "$folder/thlisten.ini" | tail -n 1)
    if [[ -z $port || $port == 0 ]]; then
        Say "$folder/thlisten.ini sets no SyslogUDPPort: no notifications are sent by syslog"
        port=""
    elif PortTaken "$port"; then
        Say "Another program uses UDP port $port: the console will ask what to do, and no notifications are sent by syslog"
        port=""
    fi
}

ConsoleListens() {
    Runs "$console" || Fail "the console ended while starting"
    [[ -S $runtime/mailslot/TallyhornEngine ]] && { [[ -z $port ]] || PortTaken "$port"; }
}

StartConsole() {
    Say "Starting the console with the folder $folder/${port:+ and syslog on UDP port $port}"
    TALLYHORN_SUMMARY=$PWD/$folder/summary.txt "$bin/tallyhorn-console" --folder "$folder" &
    console=$!
    started+=("$console")
    WaitFor 20 ConsoleListens || Fail "the console was not listening after 20 seconds"
}

# Send FILE COUNT RATE SEED [OPTION...]: appends the report of tallyhorn-send to FILE.
Send() {
    local file=$folder/$1 count=$2 rate=$3 seed=$4
    shift 4
    "$bin/tallyhorn-send" "$@" --demo --count "$count" --rate "$rate" --seed "$seed" >>"$file" 2>&1
}

# SendBoth COUNT RATE SEED: sends COUNT notifications to the mailslot and, if `port` is not empty, as many to that port
# at the same time.
SendBoth() {
    local syslog=""
    if [[ -n $port ]]; then
        Send sent-syslog.txt "$1" "$2" "$(($3 + 100))" --syslog "127.0.0.1:$port" &
        syslog=$!
    fi
    Send sent.txt "$@" || Fail "sending to the mailslot failed: $(tail -n 1 "$folder/sent.txt")"
    [[ -z $syslog ]] || wait "$syslog" ||
        Fail "sending by syslog failed: $(tail -n 1 "$folder/sent-syslog.txt")"
}

ShowSummary() {
    Say "Sent:"
    cat "$folder"/sent*.txt
    Say "Received:"
    cat "$folder/summary.txt" || Fail "the console wrote no summary"
}

RunOnDisplay() {
    local feed feeds=()
    WriteSettings 5514
    FindPort
    StartConsole
    Say "Sending a burst of notifications, then four per second on each channel until the console ends"
    Say "To send more: XDG_RUNTIME_DIR=$runtime $bin/tallyhorn-send --help"
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

# Sums FILE PATTERN: prints two sums, one for each of the two numbers that PATTERN captures in the lines of FILE.
Sums() { sed -nE "s/$2/\1 \2/p" "$1" | awk '{ some += $1; more += $2 } END { print some + 0, more + 0 }'; }

# Checks that the console received what was sent to the mailslot.  A text that was sent in several datagrams may be
# missing: by the protocol, the console drops it if it reads all of these datagrams in one poll.
CheckMailslot() {
    local texts datagrams received
    read -r texts datagrams < <(Sums "$folder/sent.txt" '^sent ([0-9]+) texts?, ([0-9]+) datagrams?,.*')
    received=$(sed -nE 's/^NetBIOS ([0-9]+) received.*/\1/p' "$folder/summary.txt")
    ((texts == burst + steady)) || Fail "the feed sent $texts texts instead of $((burst + steady))"
    ((${received:-0} >= 2 * texts - datagrams && ${received:-0} <= texts)) ||
        Fail "the console received ${received:-none} of $texts texts sent to the mailslot"
}

# CheckSyslog RECEIVED: checks the line of the summary about syslog.  A notification with an unknown event type ("other"
# in the report of tallyhorn-send) appears in a list but not in the tree.
CheckSyslog() {
    local sent others expected line
    read -r sent _ < <(Sums "$folder/sent-syslog.txt" '^sent ([0-9]+) datagrams?, ([0-9]+) bytes.*')
    read -r others _ < <(Sums "$folder/sent-syslog.txt" '^  other: ([0-9]+)()$')
    ((sent == burst + steady)) || Fail "the feed sent $sent datagrams instead of $((burst + steady))"
    line=$(sed -n '/^Syslog /p' "$folder/summary.txt")
    expected="Syslog $1 received, $sent kept, rows: *, leaves: $((sent - others))"
    # shellcheck disable=SC2053  # $expected is a pattern
    [[ $line == $expected ]] || Fail "the summary of the console says '$line' instead of '$expected'"
}

# Keys KEY...: presses the keys, one after the other.
Keys() { xdotool key --delay 60 "$@"; }

# Screenshot NAME: calls ImageMagick's import by its full path, because PATH may contain another program of that name.
Screenshot() {
    sleep 0.7  # until the page is painted
    /usr/bin/import -window root "$folder/$1.png" || Fail "could not take the screenshot $folder/$1.png"
}

TakeScreenshots() {
    Screenshot screenshot
    Keys alt+s
    Screenshot syslog
    Keys alt+y alt+d Home
    Screenshot tree-closed
    # Opens two alarms of the tree; of each, the first computer and its notifications.
    Keys Down Right Down Right Down Right
    xdotool type --delay 60 'Logon f'
    Keys Right Down Right Down Right Down
    Screenshot tree
    cmp -s "$folder/tree-closed.png" "$folder/tree.png" && Fail "the keys that open branches of the tree had no effect"
    return 0
}

# Checks that a second run restores the messages and writes the same Backup.dat when it ends.
CheckRestart() {
    cp "$folder/Backup.dat" "$folder/Backup.first"
    Say "Starting the console again: it must restore its messages"
    StartConsole
    WaitFor 20 WindowShows || Fail "the console shows no window at its second start"
    Keys alt+s
    Screenshot restarted
    EndConsole
    CheckSyslog 0
    cmp "$folder/Backup.first" "$folder/Backup.dat" || Fail "Backup.dat has changed after the second run"
    Say "All messages were restored, and Backup.dat is identical after the second run"
}

RunHeadless() {
    Say "There is no display: running under Xvfb for about twenty seconds"
    folder=demo/headless
    rm -rf "$folder"
    port=$(FreePort)
    WriteSettings "$port"
    StartDisplay "$runtime"
    StartConsole
    WaitFor 20 WindowShows || Fail "the console shows no window"
    Say "Sending $burst notifications at once, then $steady at 5 per second, by mailslot and by syslog"
    SendBoth "$burst" 2000 1
    SendBoth "$steady" 5 2
    sleep 2  # the console polls its mailslot every half second
    TakeScreenshots
    EndConsole
    ShowSummary
    CheckMailslot
    CheckSyslog "$((burst + steady))"
    Say "The console received and kept everything that was sent"
    CheckRestart
    Say "Screenshots: $folder/screenshot.png, syslog.png, tree-closed.png, tree.png, restarted.png"
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
