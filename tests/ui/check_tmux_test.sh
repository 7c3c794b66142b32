#!/bin/sh
# End to end test of `orth check`, `orth options` and `orth dicts` as a new
# user meets them: the real program in a tmux pane of 80x24 with a fresh
# configuration folder, driven with send-keys, read with capture-pane, and
# the files it writes checked afterwards.
# Groups: Refusal (no terminal), FirstRun (a doubled word deleted, a
# misspelling changed with Change All and changed again without a stop, a
# word added; the file and its backup), Options (a box set and saved),
# SecondRun (the added word and the option hold; Esc writes nothing new),
# Dicts (the added word listed), Interrupt (Ctrl-C: the file untouched, the
# terminal back in its normal mode).
# Usage: check_tmux_test.sh ORTH. Exit 77 (skipped) without tmux.
set -u
orth=$1
command -v tmux >/dev/null 2>&1 || { echo "tmux is not installed: skipped"; exit 77; }

work=$(mktemp -d "${TMPDIR:-/tmp}/orth-check-XXXXXX")
TMUX_TMPDIR=$work
export TMUX_TMPDIR
unset TMUX ORTH_DICPATH ORTH_SETTINGS
XDG_CONFIG_HOME=$work/config
export XDG_CONFIG_HOME
session=orth-check-$$-0
cleanup() {
    tmux kill-server >/dev/null 2>&1
    rm -rf "$work"
}
trap cleanup EXIT

fail() {
    echo "FAIL: $*"
    echo "--- screen:"
    tmux capture-pane -p -t "$session" 2>/dev/null
    exit 1
}

wait_for() {
    i=0
    while [ $i -lt 100 ]; do
        if eval "$1"; then return 0; fi
        sleep 0.1
        i=$((i + 1))
    done
    return 1
}
screen() { tmux capture-pane -p -t "$session"; }
on_screen() { screen | grep -qF -- "$1"; }
expect_screen() { wait_for "on_screen '$1'" || fail "screen never showed: $1"; }
keys() { tmux send-keys -t "$session" "$@"; }
same() { [ "$(cat "$1")" = "$2" ] || fail "$1 holds: $(cat "$1")"; }

# A small dictionary of our own.
mkdir -p "$work/dict" "$work/docs"
printf '%s\n' a again and cat end fine hello is mat more of on sat the words world > "$work/words"
"$orth" compress -o "$work/dict/MAIN.CLX" "$work/words" >/dev/null || fail "no dictionary"

# The pane runs orth under a shell that outlives it, then records the exit
# status and the terminal's mode.
cat > "$work/run.sh" <<EOF
trap : INT
cd "$work/docs"
"$orth" "\$@"
echo \$? > "$work/status"
stty -a > "$work/stty"
echo "orth ended"
sleep 60
EOF

runs=0
start() {
    rm -f "$work/status" "$work/stty"
    runs=$((runs + 1))
    previous=$session
    session=orth-check-$$-$runs
    tmux new-session -d -s "$session" -x 80 -y 24 sh "$work/run.sh" "$@" || fail "tmux did not start"
    tmux kill-session -t "$previous" >/dev/null 2>&1
}

expect_end() {
    wait_for "[ -s '$work/stty' ]" || fail "orth did not end ($2)"
    [ "$(cat "$work/status")" = "$1" ] || fail "$2: status $(cat "$work/status"), expected $1"
    grep -q -- " icanon" "$work/stty" && grep -q -- " echo " "$work/stty" || fail "$2: terminal left in raw mode"
    [ "$(tmux display -p -t "$session" '#{alternate_on}')" = 0 ] || fail "$2: still on the alternate screen"
}

# --- Refusal.
printf 'x\n' > "$work/docs/x.txt"
out=$("$orth" check "$work/docs/x.txt" </dev/null 2>&1)
[ $? -eq 2 ] || fail "refusal: status"
case $out in *"standard input is not a terminal"*) ;; *) fail "refusal message: $out" ;; esac
[ ! -e "$XDG_CONFIG_HOME/orth" ] || fail "refusal wrote settings"

# --- FirstRun.
original='The cat sat on the the mat.
A wrold of words, qwzx and more.
Hello wrold again.'
printf '%s\n' "$original" > "$work/docs/notes.txt"
start -d "$work/dict" check notes.txt
expect_screen "Doubled word:"
expect_screen "The cat sat on the the mat."
tmux capture-pane -e -p -t "$session" | grep -q "on the $(printf '\033')\[1;7mthe" ||
    fail "the doubled word is not highlighted in its line"
expect_screen "[D]elete"
keys c            # Change is Delete here: c does nothing, d deletes
on_screen "Doubled word:" || fail "c acted on a doubled word"
keys d
expect_screen "Not in Dictionary:"
expect_screen "A wrold of words, qwzx and more."
keys s
expect_screen "1 world"
keys 1
expect_screen "Change To:          [world"
keys l            # Change All: the wrold of the last line changes without a stop
expect_screen "Not in Dictionary:  [qwzx"
keys a
expect_end 0 "first run"
expect_screen "orth: first use: settings written to $XDG_CONFIG_HOME/orth/ORTH.INI"
expect_screen "notes.txt: 3 errors, 3 words changed; written (old text in notes.txt.bak)"
same "$work/docs/notes.txt" 'The cat sat on the mat.
A world of words, qwzx and more.
Hello world again.'
same "$work/docs/notes.txt.bak" "$original"
tr -d "\r" < "$XDG_CONFIG_HOME/orth/dict.tlx" | grep -qx "qwzx" || fail "qwzx not in the personal dictionary"

# --- Options: doubled words are no longer reported.
start options
expect_screen "[x] Report doubled words (e.g., the the)"
keys d
expect_screen "[ ] Report doubled words (e.g., the the)"
keys Enter
expect_end 0 "options"
grep -qx "ReportDoubledWords=0" "$XDG_CONFIG_HOME/orth/ORTH.INI" || fail "the option was not saved"

# --- SecondRun: qwzx is known, doubled words pass, Change All was this run's.
second='qwzx is fine, the the end, wrold.'
printf '%s\n' "$second" > "$work/docs/second.txt"
start check second.txt
expect_screen "Not in Dictionary:  [wrold"
keys Escape
expect_end 1 "second run"
expect_screen "second.txt: 1 error, 0 words changed, cancelled; unchanged"
same "$work/docs/second.txt" "$second"
[ ! -e "$work/docs/second.txt.bak" ] || fail "an unchanged file got a backup"

# --- Dicts: the personal dictionary and its word.
start dicts
expect_screen "Files:     <dict.tlx"
expect_screen "1 qwzx"
expect_screen "Type:      Ignore"
keys o
expect_end 0 "dicts"

# --- Interrupt: Ctrl-C ends without writing and gives the terminal back.
start check second.txt
expect_screen "Not in Dictionary:  [wrold"
keys t C-u word Enter
expect_screen "Change To:          [word "
keys C-c
expect_end 130 "Ctrl-C"
same "$work/docs/second.txt" "$second"

echo "orth check in the terminal: all passed"
