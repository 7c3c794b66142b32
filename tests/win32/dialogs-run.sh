#!/bin/sh
# tests/win32/dialogs-run.sh PREFIX ARCH SHOTS EXPECT... -- PROGRAM [ARG...]
# — runs a Windows program that shows dialogs, as wine-run.sh does (which it
# calls, with the same EXPECTs), but on a display of its own: a private
# Xvfb server, 1024x768 in true colour, started here and stopped at the end
# together with the prefix's wineserver.
#
# Screenshots: the program asks for one by writing NAME.want into the folder
# ORTH_SHOTS names (SHOTS, cleared first), holding the dialog's geometry
# (WxH+X+Y). This script then takes the whole screen with ImageMagick's
# import -window root into NAME-screen.png, crops the dialog out of it into
# NAME.png, and removes NAME.want, which tells the program to go on.
set -u
prefix=$1 arch=$2 shots=$3
shift 3
here=$(cd "$(dirname "$0")" && pwd)
command -v Xvfb >/dev/null || { echo "dialogs-run: Xvfb is not installed (package xvfb)" >&2; exit 1; }
case "$shots" in
/*) ;;
*) echo "dialogs-run: SHOTS must be an absolute folder, not $shots" >&2; exit 2 ;;
esac
rm -rf "$shots"
mkdir -p "$shots"

displayfile=$shots/display
Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp 3>"$displayfile" 2>"$shots/xvfb.log" &
xvfb=$!
shooter=
cleanup() {
    [ -n "$shooter" ] && kill "$shooter" 2>/dev/null
    ( . "$here/wine-env.sh"; timeout 30 wineserver -k 2>/dev/null )
    kill "$xvfb" 2>/dev/null
    wait 2>/dev/null
}
trap cleanup EXIT
trap 'exit 1' INT TERM
for _ in $(seq 100); do
    [ -s "$displayfile" ] && break
    kill -0 "$xvfb" 2>/dev/null || break
    sleep 0.1
done
[ -s "$displayfile" ] || { cat "$shots/xvfb.log" >&2; echo "dialogs-run: Xvfb did not start" >&2; exit 1; }
display=:$(head -n 1 "$displayfile")

if command -v import >/dev/null && command -v convert >/dev/null; then
    (
        while kill -0 "$xvfb" 2>/dev/null; do
            for want in "$shots"/*.want; do
                [ -f "$want" ] || continue
                name=${want%.want}
                DISPLAY=$display import -window root "$name-screen.png" &&
                    convert "$name-screen.png" -crop "$(head -n 1 "$want")" +repage "$name.png" ||
                    echo "dialogs-run: no screenshot $name.png" >&2
                rm -f "$want"
            done
            sleep 0.1
        done
    ) &
    shooter=$!
    export ORTH_SHOTS="Z:$(printf '%s' "$shots" | tr / '\\')"
else
    echo "dialogs-run: ImageMagick's import is not installed: no screenshots" >&2
fi

ORTH_WINE_DISPLAY=$display sh "$here/wine-run.sh" "$prefix" "$arch" "$@"
status=$?
exit "$status"
