#!/bin/sh
# tests/integration/enchant_test.sh PROVIDER SHIM HOST ORTH [RUNTIME]
# The orth provider through the real enchant-2 programs and through
# Enchant's C API (HOST), loaded from the build tree: Enchant's provider
# folder is redirected to a private one holding the system's providers and
# ours, by the preload SHIM or else by a private mount namespace. Private
# HOME, XDG_CONFIG_HOME and ENCHANT_CONFIG_DIR; system folders are only
# read. RUNTIME: a sanitizer runtime to preload first (sanitizer builds).
# Exits 77 (skipped) when Enchant is missing or its folder cannot be
# redirected.
set -u
provider=$1 shim=$2 host=$3 orth=$4 runtime=${5:-}
for tool in enchant-2 enchant-lsmod-2 pkg-config; do
    command -v "$tool" >/dev/null 2>&1 || { echo "$tool not installed: skipped"; exit 77; }
done
sysdir=$(pkg-config --variable=libdir enchant-2)/enchant-2
[ -d "$sysdir" ] || { echo "no Enchant provider folder $sysdir: skipped"; exit 77; }

work=$(mktemp -d "${TMPDIR:-/tmp}/orth-enchant-XXXXXX")
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/modules" "$work/config" "$work/home"
for m in "$sysdir"/*.so; do [ -e "$m" ] && cp "$m" "$work/modules/"; done
ln -sf "$provider" "$work/modules/enchant_orth.so"
printf 'en_US:orth,aspell\nen_GB:orth\n*:orth,hunspell\n' > "$work/config/enchant.ordering"
export HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" ENCHANT_CONFIG_DIR="$work/config"
export ORTH_SHIM_FROM="$sysdir" ORTH_SHIM_TO="$work/modules" ASAN_OPTIONS=detect_leaks=0
unset ORTH_DICPATH

preload=$shim
[ -n "$runtime" ] && preload="$runtime:$shim"
via_preload() { LD_PRELOAD="$preload${LD_PRELOAD:+:$LD_PRELOAD}" "$@"; }
via_namespace() {
    unshare -rm sh -c 'mount --bind "$1" "$2" && shift 2 && exec "$@"' sh "$work/modules" "$sysdir" \
        env ${runtime:+LD_PRELOAD=$runtime} "$@"
}
run=
for way in via_preload via_namespace; do
    if $way enchant-lsmod-2 -list-dicts 2>/dev/null | grep -q '^en_US (orth)$'; then run=$way; break; fi
done
[ -n "$run" ] || { echo "cannot point Enchant at the build tree (no preload, no mount namespace): skipped"; exit 77; }
echo "provider loaded $run"

failures=0
expect() {  # expect WHAT GOT WANT
    if [ "$2" != "$3" ]; then
        printf 'FAIL %s:\n  got  %s\n  want %s\n' "$1" "$2" "$3"
        failures=$((failures + 1))
    fi
}

expect "dictionaries" "$($run enchant-lsmod-2 -list-dicts | grep '(orth)' | tr '\n' ' ')" "en_GB (orth) en_US (orth) "
expect "enchant-2 -l" "$(printf 'Thier cat DECEMBER recieve MySpace caf\303\251\n' | $run enchant-2 -d en_US -l | tr '\n' ' ')" \
    "Thier recieve "
expect "enchant-2 -a" "$(printf 'recieve\n' | $run enchant-2 -d en_US -a | sed -n 2p | cut -d, -f1)" \
    "& recieve 5 0: receive"
expect "enchant-2 -l, British" "$(printf 'colour color\n' | $run enchant-2 -d en_GB -l)" "color"
# A user who keeps another provider first for en_US does not get orth.
other=$(enchant-lsmod-2 -list-dicts 2>/dev/null | sed -n 's/^en_US (\(.*\))$/\1/p' | head -n 1)
if [ -n "$other" ]; then
    printf 'en_US:%s,orth\n' "$other" > "$work/config/enchant.ordering"
    expect "ordering" "$($run enchant-lsmod-2 -list-dicts | grep '^en_US')" "en_US ($other)"
    printf 'en_US:orth\n' > "$work/config/enchant.ordering"
fi

$run "$host" "$provider" || failures=$((failures + 1))
# A word added through Enchant is the orth command's personal word too.
expect "personal word seen by orth -l" "$(printf 'Quuxly Zorblax\n' | "$orth" -l -d en_US)" "Zorblax"

[ "$failures" -eq 0 ] && echo "enchant_test: all passed"
[ "$failures" -eq 0 ]
