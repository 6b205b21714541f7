# shellcheck shell=bash disable=SC2119,SC2120,SC2154
# Functions that act on the console's windows like an operator at the keyboard.  Sourced after display.sh by a script that
# defines `title` (of the main window), `folder` (for pictures and the console's files) and FailSession MESSAGE.

# Visible TITLE COUNT: succeeds if exactly that many windows with that title are visible.
Visible() {
    local windows
    windows=$(xdotool search --onlyvisible --name "^$1\$" 2>/dev/null | wc -l)
    ((windows == $2))
}

Pixels() { /usr/bin/import -window root rgb:- | cksum; }

Unchanged() {
    local before
    before=$(Pixels)
    sleep "$1"
    [[ $(Pixels) == "$before" ]]
}

# Settle [SECONDS]: waits until the screen has not changed for 0.2 or SECONDS seconds.  A text cursor blinks every half
# second, so a longer time works only if no text cursor is visible.
Settle() { WaitFor 20 Unchanged "${1:-0.2}" || FailSession "keeps changing the screen"; }

# Succeeds if the active window has the keyboard focus.  Keys that are pressed after a dialog has closed and before the
# window below it is active are lost.
HasKeyboard() {
    local active focus
    active=$(xdotool getactivewindow 2>/dev/null) && focus=$(xdotool getwindowfocus 2>/dev/null) &&
        [[ $active == "$focus" ]]
}

# Keys KEY...: presses the keys, one after the other.
Keys() {
    WaitFor 15 HasKeyboard || FailSession "did not give the keyboard focus to its active window"
    xdotool key --delay 60 "$@"
}

Type() { xdotool type --delay 30 "$1"; }

# Picture NAME: saves a picture of the screen.
Picture() { /usr/bin/import -window root "$folder/$1.png" || Fail "could not take the screenshot $folder/$1.png"; }

# PictureOf TITLE NAME: saves a picture of one window with its frame.
PictureOf() {
    local window
    window=$(xdotool search --onlyvisible --name "^$1\$" | tail -n 1)
    Settle
    /usr/bin/import -frame -window "$window" "$folder/$2.png" || Fail "could not take the screenshot $folder/$2.png"
}

# Opens TITLE KEY...: presses the keys, which must open a dialog with that title.
Opens() {
    local opened=$1
    shift
    Keys "$@"
    WaitFor 15 Visible "$opened" 1 || FailSession "does not open '$opened' after the keys $*"
}

# Closes TITLE KEY...: presses the keys, which must close the dialog with that title.
Closes() {
    local closed=$1
    shift
    Keys "$@"
    WaitFor 15 Visible "$closed" 0 || FailSession "does not close '$closed' after the keys $*"
}

# Question NAME KEY...: presses the keys, which must open a message box, and answers it with Yes.
Question() {
    local shown=$1
    shift
    Keys "$@"
    WaitFor 15 Visible "$title" 2 || FailSession "shows no question after the keys $*"
    Picture "question-$shown"
    Keys alt+y
    [[ $shown == close ]] || WaitFor 15 Visible "$title" 1 || FailSession "does not close the question after the keys $*"
}

# Export NAME: exports the current page to NAME.txt.
Export() {
    Question "export-$1" alt+t p
    WaitFor 15 Visible "Save As" 1 || FailSession "shows no file dialog"
    Settle
    Picture "save-$1"
    Keys Home shift+End
    Type "$1.txt"
    Keys Return
    WaitFor 15 test -s "$folder/$1.txt" || FailSession "writes no export"
    WaitFor 15 Visible "Save As" 0 || FailSession "does not close the file dialog"
    Settle
    # When Wine's file dialog has closed, the main window is not active.
    timeout 15 xdotool search --onlyvisible --name "^$title\$" windowactivate --sync ||
        FailSession "does not come to the front"
}
