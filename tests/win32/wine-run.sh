#!/bin/sh
# tests/win32/wine-run.sh PREFIX ARCH EXPECT... -- PROGRAM [ARG...] — runs a
# Windows program under wine in the tests' prefix, with a time limit. It
# passes only when the program exits 0 and, for each EXPECT (an extended
# regular expression), some line of its output matches: wine can exit 0
# without having run the program at all, so each program's own closing line
# is among them.
set -u
prefix=$1 arch=$2
shift 2
. "$(dirname "$0")/wine-env.sh"
expects=$prefix/expect-$$.txt
: >"$expects"
while [ $# -gt 0 ] && [ "$1" != "--" ]; do
    printf '%s\n' "$1" >>"$expects"
    shift
done
[ $# -ge 2 ] || { echo "usage: wine-run.sh PREFIX ARCH EXPECT... -- PROGRAM [ARG...]" >&2; exit 2; }
shift
if [ ! -f "$prefix/system.reg" ]; then
    echo "wine-run: no prefix at $prefix (the win32_prefix test makes it)" >&2
    exit 1
fi
out=$prefix/run-$$.log
timeout -k 10 240 wine "$@" >"$out" 2>&1
status=$?
cat "$out"
missing=0
while IFS= read -r expect; do
    if ! grep -Eq -- "$expect" "$out"; then
        echo "wine-run: $1 ended (status $status) without a line /$expect/" >&2
        missing=1
    fi
done <"$expects"
rm -f "$out" "$expects"
if [ "$status" -eq 124 ] || [ "$status" -eq 137 ]; then
    echo "wine-run: $1 timed out" >&2
    exit 1
fi
[ "$missing" -eq 0 ] || exit 1
exit "$status"
