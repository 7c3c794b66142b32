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
name=orth-check
. "$(dirname "$0")/tmux_lib.sh"
unset ORTH_DICPATH ORTH_SETTINGS
XDG_CONFIG_HOME=$work/config
export XDG_CONFIG_HOME
same() { [ "$(cat "$1")" = "$2" ] || fail "$1 holds: $(cat "$1")"; }

# A small dictionary of our own.
mkdir -p "$work/dict" "$work/docs"
printf '%s\n' a again and cat end fine hello is mat more of on sat the words world > "$work/words"
"$orth" compress -o "$work/dict/MAIN.CLX" "$work/words" >/dev/null || fail "no dictionary"

write_runner "$work/docs" "$orth"

# --- Refusal.
printf 'x\n' > "$work/docs/x.txt"
expect_refusal "$orth" check "$work/docs/x.txt"
[ ! -e "$XDG_CONFIG_HOME/orth" ] || fail "refusal wrote settings"

# --- FirstRun.
original='The cat sat on the the mat.
A wrold of words, qwzx and more.
Hello wrold again.'
printf '%s\n' "$original" > "$work/docs/notes.txt"
start_session -d "$work/dict" check notes.txt
expect_screen "Doubled word:"
expect_screen "The cat sat on the the mat."
expect_highlighted the "on the "
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
start_session options
expect_screen "[x] Report doubled words (e.g., the the)"
keys d
expect_screen "[ ] Report doubled words (e.g., the the)"
keys Enter
expect_end 0 "options"
grep -qx "ReportDoubledWords=0" "$XDG_CONFIG_HOME/orth/ORTH.INI" || fail "the option was not saved"

# --- SecondRun: qwzx is known, doubled words pass, Change All was this run's.
second='qwzx is fine, the the end, wrold.'
printf '%s\n' "$second" > "$work/docs/second.txt"
start_session check second.txt
expect_screen "Not in Dictionary:  [wrold"
keys Escape
expect_end 1 "second run"
expect_screen "second.txt: 1 error, 0 words changed, cancelled; unchanged"
same "$work/docs/second.txt" "$second"
[ ! -e "$work/docs/second.txt.bak" ] || fail "an unchanged file got a backup"

# --- Dicts: the personal dictionary and its word.
start_session dicts
expect_screen "Files:     <dict.tlx"
expect_screen "1 qwzx"
expect_screen "Type:      Ignore"
keys o
expect_end 0 "dicts"

# --- Interrupt: Ctrl-C ends without writing and gives the terminal back.
start_session check second.txt
expect_screen "Not in Dictionary:  [wrold"
keys t C-u word Enter
expect_screen "Change To:          [word "
keys C-c
expect_end 130 "Ctrl-C"
same "$work/docs/second.txt" "$second"

echo "orth check in the terminal: all passed"
