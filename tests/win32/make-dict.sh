#!/bin/sh
# tests/win32/make-dict.sh PREFIX ARCH MKDICT DICTDIR DATADIR [REFERENCE] —
# compresses the American English list under wine with the cross-built
# orth_mkdict into DICTDIR (MAIN.CLX and MAIN.TLX), possessives reduced to
# their stems as in the Linux build, for the host tests. With
# REFERENCE, a MAIN.CLX the Linux build made from the same list, the two
# must be byte for byte the same but for the banner's 24-character date
# (bytes 22 to 45).
set -eu
prefix=$1 arch=$2 mkdict=$3 dir=$4 data=$5 ref=${6:-}
. "$(dirname "$0")/wine-env.sh"
rm -rf "$dir"
mkdir -p "$dir"
timeout -k 10 240 wine "$mkdict" "$dir/MAIN.CLX" 1033 "$data/en.suffixes" "$data/en_US.words" \
    --stems "$dir/en_US.stems" --tlx "$dir/MAIN.TLX" || { echo "make-dict: orth_mkdict failed under wine (status $?)" >&2; exit 1; }
printf '#LID 1033 1 0\r\n' | cmp -s - "$dir/MAIN.TLX" || {
    echo "make-dict: $dir/MAIN.TLX missing or wrong: orth_mkdict did not run under wine" >&2; exit 1; }
test -s "$dir/MAIN.CLX" || { echo "make-dict: no $dir/MAIN.CLX" >&2; exit 1; }
size=$(wc -c <"$dir/MAIN.CLX")
if [ -n "$ref" ]; then
    if ! cmp -n 22 "$dir/MAIN.CLX" "$ref" || ! cmp -i 46 "$dir/MAIN.CLX" "$ref"; then
        echo "make-dict: $dir/MAIN.CLX differs from $ref" >&2
        exit 1
    fi
    echo "dictionary: $size bytes, the same as the Linux build's but for the date"
else
    echo "dictionary: $size bytes"
fi
