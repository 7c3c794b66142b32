# tests/ui/tmux_lib.sh — sourced by the terminal end-to-end tests: a tmux
# server of the test's own in a fresh folder $work (so parallel runs never
# meet), a new session of 80x24 for each run of the program, and the waits
# and checks on what the pane shows. The caller sets $name (the folder and
# session prefix) and names the program with write_runner.
# Exits 77 (skipped) without tmux.
command -v tmux >/dev/null 2>&1 || { echo "tmux is not installed: skipped"; exit 77; }

work=$(mktemp -d "${TMPDIR:-/tmp}/$name-XXXXXX")
TMUX_TMPDIR=$work
export TMUX_TMPDIR
unset TMUX
session=$name-$$-0
cleanup() {
    tmux kill-server >/dev/null 2>&1
    rm -rf "$work"
}
trap cleanup EXIT

fail() {
    echo "FAIL: $*"
    echo "--- screen:"
    tmux capture-pane -p -t "$session" 2>/dev/null
    if [ -f "$work/log" ]; then echo "--- log:"; cat "$work/log"; fi
    exit 1
}

# Polls a condition for up to 10 s.
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
# The word $1, after the text $2 if given, is shown highlighted (bold reverse).
expect_highlighted() {
    tmux capture-pane -e -p -t "$session" | grep -q "${2:-}$(printf '\033')\[1;7m$1" ||
        fail "$1 is not highlighted in its line"
}

# The pane's script: in folder $1, the program and arguments that follow,
# then those a session adds, under a shell that outlives the program (also
# its Ctrl-C) and then records its exit status and the terminal's mode.
write_runner() {
    folder=$1
    shift
    {
        echo 'trap : INT'
        printf 'cd "%s" || exit 1\n' "$folder"
        printf '"%s" ' "$@"
        echo '"$@"'
        printf 'echo $? > "%s/status"\nstty -a > "%s/stty"\nsleep 60\n' "$work" "$work"
    } > "$work/run.sh"
}

# Each run gets a session of its own; the previous one goes only after the
# new one exists, since a server left without sessions exits.
runs=0
start_session() {
    rm -f "$work/log" "$work/status" "$work/stty"
    runs=$((runs + 1))
    previous=$session
    session=$name-$$-$runs
    tmux new-session -d -s "$session" -x 80 -y 24 sh "$work/run.sh" "$@" || fail "tmux did not start"
    tmux kill-session -t "$previous" >/dev/null 2>&1
}

# Waits for the program to end with the given status, then checks that the
# terminal is back in its normal mode and off the alternate screen.
expect_end() {
    wait_for "[ -s '$work/stty' ]" || fail "the program did not end ($2)"
    [ "$(cat "$work/status")" = "$1" ] || fail "$2: status $(cat "$work/status"), expected $1"
    grep -q -- " icanon" "$work/stty" && grep -q -- " echo " "$work/stty" ||
        fail "$2: terminal left in raw mode: $(grep -o -- '-*icanon\|-*echo ' "$work/stty" | tr '\n' ' ')"
    [ "$(tmux display -p -t "$session" '#{alternate_on}')" = 0 ] || fail "$2: still on the alternate screen"
}

# A program given a standard input that is no terminal refuses with status 2.
expect_refusal() {
    out=$("$@" </dev/null 2>&1)
    status=$?
    [ $status -eq 2 ] || fail "refusal: status $status"
    case $out in *"standard input is not a terminal"*) ;; *) fail "refusal message: $out" ;; esac
}
