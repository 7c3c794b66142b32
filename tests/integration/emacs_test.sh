#!/bin/sh
# tests/integration/emacs_test.sh ORTH MODE — runs emacs_test.el in Emacs
# (batch mode) against the orth program, with a private HOME. MODE is
# "preset" (the documented configuration) or "probe" (Emacs finds the
# dictionaries with orth -D). Exits 77 (skipped) when Emacs is missing.
set -u
orth=$1
mode=$2
here=$(cd "$(dirname "$0")" && pwd)
command -v emacs >/dev/null 2>&1 || { echo "emacs not installed: skipped"; exit 77; }
work=$(mktemp -d "${TMPDIR:-/tmp}/orth-emacs-XXXXXX")
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/home"
unset ORTH_DICPATH
preset=0
[ "$mode" = preset ] && preset=1
HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" ORTH_PROGRAM="$orth" \
  ORTH_TEST_DIR="$work" ORTH_EMACS_PRESET=$preset LANG=C.UTF-8 \
  timeout 120 emacs --batch -Q -l "$here/emacs_test.el" 2>&1
