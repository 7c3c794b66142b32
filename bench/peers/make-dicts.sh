#!/usr/bin/env bash
# Builds one vocabulary into every engine's own dictionary form, so that
# orth and its peers are compared on the same words.
#
# Usage: make-dicts.sh OUTDIR [WORDLIST] [ORTH]
#   OUTDIR    folder to create or refresh (its files are overwritten)
#   WORDLIST  UTF-8 word list, one word a line (default: Debian's wamerican,
#             /usr/share/dict/american-english)
#   ORTH      the orth command (default: orth on PATH); without it the orth
#             dictionary is skipped with a note
#
# Output:
#   OUTDIR/words.txt            the list, sorted byte-wise, duplicates removed
#   OUTDIR/hunspell/wam.dic     the list as a Hunspell/Nuspell dictionary with a
#   OUTDIR/hunspell/wam.aff     minimal affix file (UTF-8, a TRY line, no affixes)
#   OUTDIR/aspell/wam.rws       `aspell create master` of the list (language en)
#   OUTDIR/orth/MAIN.CLX        `orth compress` of the list, possessives ('s, s')
#   OUTDIR/orth/MAIN.TLX        turned into their stems (orth strips a
#                               possessive before looking a word up), with
#                               the English suffix table; MAIN.TLX is the
#                               empty companion list that `orth -d` expects
#   OUTDIR/sizes.txt            bytes on disk of each engine's files
# Exit status 0, or 1 with a message naming the step that failed.
set -euo pipefail

out=${1:?usage: make-dicts.sh OUTDIR [WORDLIST] [ORTH]}
list=${2:-/usr/share/dict/american-english}
orth=${3:-$(command -v orth || true)}
here=$(cd "$(dirname "$0")" && pwd)
suffixes=$here/../../data/en.suffixes

fail() { echo "make-dicts.sh: $*" >&2; exit 1; }
[ -r "$list" ] || fail "cannot read the word list $list (package wamerican)"
mkdir -p "$out/hunspell" "$out/aspell" "$out/orth"

# Byte-wise order of UTF-8 is code point order, which is also the order of
# the 8-bit form orth compresses.
LC_ALL=C sort -u "$list" | LC_ALL=C grep -v '^$' > "$out/words.txt"
count=$(wc -l < "$out/words.txt")

{ echo "$count"; cat "$out/words.txt"; } > "$out/hunspell/wam.dic"
cat > "$out/hunspell/wam.aff" <<'AFF'
SET UTF-8
TRY esianrtolcdugmphbyfvkwzESIANRTOLCDUGMPHBYFVKWZ'
WORDCHARS '
AFF

command -v aspell > /dev/null || fail "aspell is not installed"
aspell --lang=en --encoding=utf-8 create master "$out/aspell/wam.rws" < "$out/words.txt" \
  || fail "aspell create master failed"

if [ -n "$orth" ]; then
  # "dog's" and "dogs'" become "dog": the stem is what orth looks up.
  LC_ALL=C sed -e "s/'[sS]\$//" -e "s/\([sS]\)'\$/\1/" "$out/words.txt" | LC_ALL=C grep -v '^$' \
    | LC_ALL=C sort -u > "$out/orth/words.txt"
  "$orth" compress -o "$out/orth/MAIN.CLX" --suffixes "$suffixes" --language 1033 \
    "$out/orth/words.txt" || fail "orth compress failed"
  printf '#LID 1033 1 0\r\n' > "$out/orth/MAIN.TLX"
else
  echo "make-dicts.sh: no orth command given or on PATH; orth dictionary skipped" >&2
fi

{
  echo "hunspell $(( $(stat -c %s "$out/hunspell/wam.dic") + $(stat -c %s "$out/hunspell/wam.aff") ))"
  echo "nuspell $(( $(stat -c %s "$out/hunspell/wam.dic") + $(stat -c %s "$out/hunspell/wam.aff") ))"
  echo "aspell $(stat -c %s "$out/aspell/wam.rws")"
  [ -f "$out/orth/MAIN.CLX" ] && echo "orth $(stat -c %s "$out/orth/MAIN.CLX")"
} > "$out/sizes.txt"
echo "make-dicts.sh: $count words into $out"
