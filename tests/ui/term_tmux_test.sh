#!/bin/sh
# End to end test of the terminal front end: ui_term_demo (the Check Spelling
# template with a logging controller) run in a tmux pane of 80x24, driven
# with send-keys and read with capture-pane. Groups: Refusal (no terminal),
# Walk (layout, marks, the accelerator rules, a nested dialog, a message
# box, a file dialog, help, the end), WaysOut (normal end, Ctrl-C, SIGTERM,
# SIGHUP, a crash, exit without giving the terminal back: each leaves the
# terminal in its normal mode and off the alternate screen).
# Usage: term_tmux_test.sh DEMO. Exit 77 (skipped) without tmux.
set -u
demo=$1
name=orth-ui
. "$(dirname "$0")/tmux_lib.sh"
in_log() { grep -qF -- "$1" "$work/log" 2>/dev/null; }
expect_log() { wait_for "in_log '$1'" || fail "log never got: $1"; }

write_runner "$work" "$demo" "$work/log"
start() {
    start_session "$@"
    expect_screen "Not in Dictionary:"
}

# --- Refusal: standard input that is no terminal.
expect_refusal "$demo" "$work/log"

# --- Walk.
: > "$work/exists.tlx"
start "$work"
expect_screen "Hello wrold, how are you?"
expect_screen " [I]gnore  I[g]nore All  Change  Change All  [A]dd  [S]uggest"
expect_highlighted wrold
keys c            # Change is disabled: nothing happens
keys 2            # the second suggestion goes to Change To
expect_screen "Change To:          [word "
expect_screen "[C]hange  Change A[l]l"
in_log "event 1003" && fail "a disabled button's key clicked it"
keys t s Enter    # t edits Change To; typing appends; Enter ends the edit
expect_screen "Change To:          [words "
keys w            # w goes to the Add-words list, which opens
expect_screen ">1 custom.tlx"
keys 2 Escape
expect_screen "<names.tlx"
keys o            # Options, a dialog started by this one
expect_screen "Ignore capitalized words (e.g., Canada)"
keys c            # shared by "Ignore &capitalized" and "&Cancel": moves there only
keys Space
expect_screen "[x] Ignore capitalized words"
keys Enter        # the default button, OK
expect_log "options 1021=1 1022=1 1045=1"
expect_log "options ended 0"
expect_screen "Not in Dictionary:"
keys a            # a message box with OK and Cancel; Esc is Cancel
expect_screen "Add the word?"
keys Escape
expect_log "box 2"
keys n            # a file dialog that insists on an existing file
expect_screen "Add Dictionary File"
keys nosuch Enter
expect_screen "File not found:"
keys Enter C-u exists.tlx Enter
expect_log "file $work/exists.tlx"
keys h
expect_screen "Help topic 100 of orth.hlp"
keys Enter
expect_screen "Not in Dictionary:"
keys C            # accelerators ignore case
expect_log "change wrold -> words into names.tlx"
expect_end 0 "normal end"
expect_log "end 0"

# --- WaysOut: each way out of the program leaves the terminal usable.
pid_of() { sed -n 's/^pid //p' "$work/log"; }
start
keys C-c
expect_end 130 "Ctrl-C"
start
kill -TERM "$(pid_of)"
expect_end 143 "SIGTERM"
start
kill -HUP "$(pid_of)"
expect_end 129 "SIGHUP"
start --crash-on-add
keys a
expect_end 139 "a crash"
start --exit-on-ignore
keys i
expect_end 3 "exit without giving the terminal back"

echo "terminal front end: all passed"
