#!/usr/bin/env bash
# Renders the English manual pages of Debian's manpages and manpages-dev
# packages to plain text: the benchmark's running English (about 2.3 million
# words; the text depends only on the versions of the two packages and of
# groff, written to OUTDIR/corpus.source).
#
# Usage: make-corpus.sh OUTDIR
#   OUTDIR/corpus.txt     the pages, one after another, as UTF-8 text
#   OUTDIR/corpus.source  package versions and the page count
# Pages that only include another page (.so lines) are skipped, so no page
# is rendered twice. Rendering uses groff with hyphenation off, so words are
# never broken across lines.
set -euo pipefail

out=${1:?usage: make-corpus.sh OUTDIR}
command -v groff > /dev/null || { echo "make-corpus.sh: groff is not installed" >&2; exit 1; }
mkdir -p "$out"
pages=$(dpkg -L manpages manpages-dev | LC_ALL=C grep -E '^/usr/share/man/man[0-9]/.*\.gz$' | LC_ALL=C sort)
[ -n "$pages" ] || { echo "make-corpus.sh: packages manpages and manpages-dev are not installed" >&2; exit 1; }
n=0
: > "$out/corpus.txt.tmp"
for page in $pages; do
  [ -f "$page" ] || continue
  if [ "$(zcat "$page" | LC_ALL=C grep -cv '^\.so ')" -eq 0 ]; then continue; fi
  zcat "$page" | groff -man -Tutf8 -rHY=0 -P-c -P-b -P-u 2> /dev/null >> "$out/corpus.txt.tmp" || true
  n=$((n + 1))
done
mv "$out/corpus.txt.tmp" "$out/corpus.txt"
{
  dpkg-query -W -f='${Package} ${Version}\n' manpages manpages-dev groff-base
  echo "pages $n, words $(wc -w < "$out/corpus.txt")"
} > "$out/corpus.source"
cat "$out/corpus.source"
