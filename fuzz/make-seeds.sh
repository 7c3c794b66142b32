#!/usr/bin/env bash
# Makes the fuzz targets' starting corpora in fuzz/seeds/ with our own tools:
# compressed lexicons from the orth command's compressor, text lexicons from
# its lex command, and inputs laid out the way each target reads them (a
# string ends at a backslash that is not doubled; numbers come from the end).
# The compressed lexicons carry their creation time, so each run changes them.
# Usage: fuzz/make-seeds.sh BUILD_DIR   (a build tree holding the orth command)
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
orth="$1/orth"
seeds="$here/seeds"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
# Inputs named regress-* reproduce problems fuzzing found: they stay.
[ -d "$seeds" ] && find "$seeds" -type f ! -name 'regress-*' -delete
mkdir -p "$seeds"/{clex,tlex,userlist,lexsq,block,api,text,pipe,settings}

crlf() { sed 's/$/\r/'; }
# Sorted words of three or more letters beginning with "ab" and "he", and a few small ones.
words="$(tr -d '\r' < "$here/../data/en_US.words" | grep -E '^(ab|he)[a-z]{1,8}$' | LC_ALL=C sort -u | awk 'NR % 40 == 1 && n++ < 24')"
printf '%s\n' a I | LC_ALL=C sort > "$work/small.txt"
printf '%s\n' "$words" > "$work/words.txt"
head -12 "$here/../data/en.suffixes" > "$work/suffixes.txt"
"$orth" compress -o "$seeds/clex/suffixed.clx" --suffixes "$work/suffixes.txt" "$work/words.txt"
"$orth" compress -o "$seeds/clex/plain.clx" "$work/small.txt" "$work/words.txt"

"$orth" lex create "$work/ignore.tlx" --type ignore --language 2057
"$orth" lex add "$work/ignore.tlx" colour grey "doesn't" >/dev/null
"$orth" lex create "$work/auto.tlx" --type auto
"$orth" lex add "$work/auto.tlx" teh:the recieve:receive "a:b:c" >/dev/null
printf 'pear\r\n# note\r\napple' > "$work/headerless.tlx"
for f in ignore auto headerless; do
  # The file, then one add of "word" with the replacement "repl".
  { cat "$work/$f.tlx"; printf '\\\nword\\\nrepl\\\n\x01\x00'; } > "$seeds/tlex/$f"
done

printf '\x03\x00\x06colour\x04grey\x07doesn'"'"'t' > "$seeds/userlist/three"
printf '\x00\x00' > "$seeds/userlist/empty"

# Suffixes, then one word file; at the end: one file, with suffixes, set 0.
{ crlf < "$work/suffixes.txt"; printf '\\\n'; crlf < "$work/small.txt"; crlf < "$work/words.txt"; printf '\\\n\x00\x01\x00'; } \
  > "$seeds/lexsq/suffixed"

head -c 400 "$here/../examples/sample.txt" > "$seeds/text/sample.txt"
# Pipe-mode lines as an editor sends them: plain text, a word to accept for
# the session, one to add, a TeX line, and a line beginning with a command.
printf '!\n^Thier quick brown fox\n@colour\n*helo\n^\\textbf{wrold} and $x$\n+\n^more texxt\n-\n%%\n#\n' \
  > "$seeds/pipe/editor-session"
{ head -c 200 "$here/../examples/sample.txt"; printf '\\\n\x00\x01\x02\x03\x04\x05\x06\x07\x00\x00\x00\x00\x00'; } \
  > "$seeds/block/sample"
printf '\x00\x00\x04\x00\x07\x00\x0c\x00\x0d\x00\x0e' > "$seeds/api/open-add-check"
# An INI file, then a user registry file in the store's own format (a
# backslash of the key path doubled, as the target's string reader wants).
{ printf '[ORTH]\r\nMainLexPath=/usr/share/orth/en_US\r\nMainLexFiles="MAIN.CLX"\r\n; note\r\n'
  printf '[ORTH User]\r\nAlwaysSuggest = -1\r\nDebugFile=\r\n\\\n'
  printf '[Software\\\\Tamarind\\\\ORTH]\nMainLexPath=sz:/usr/share/orth%%0A\nAlwaysSuggest=dword:00000001\n'
  printf '\\\n\x10\x20\x30\x40'; } > "$seeds/settings/ini-and-registry"
du -sh "$seeds"
