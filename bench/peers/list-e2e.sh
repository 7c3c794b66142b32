#!/usr/bin/env bash
# Times `orth list` against `aspell list` and `hunspell -l` end to end: each
# reads the same text from standard input with the same vocabulary (the
# dictionaries of make-dicts.sh) and writes the words it rejects. The runs of
# the three commands are interleaved, round after round, so a busy moment of
# the machine hits all alike; the table gives per command the median wall
# and user time, the largest resident set and the lines written.
#
# Usage: list-e2e.sh ORTH DICTS TEXT [WORDS] [ROUNDS]
#   ORTH    the orth command          DICTS  a folder made by make-dicts.sh
#   TEXT    UTF-8 text; its first WORDS words (default 1000000), whole lines
#   ROUNDS  runs of each command (default 5)
# Needs GNU time (/usr/bin/time, Debian package time) for the timings.
set -euo pipefail

orth=${1:?usage: list-e2e.sh ORTH DICTS TEXT [WORDS] [ROUNDS]}
dicts=${2:?usage: list-e2e.sh ORTH DICTS TEXT [WORDS] [ROUNDS]}
text=${3:?usage: list-e2e.sh ORTH DICTS TEXT [WORDS] [ROUNDS]}
words=${4:-1000000}
rounds=${5:-5}
[ -x /usr/bin/time ] || { echo "list-e2e.sh: GNU time (/usr/bin/time) is needed" >&2; exit 1; }
work=$(mktemp -d "${TMPDIR:-/tmp}/orth-list-e2e.XXXXXX")
trap 'rm -rf "$work"' EXIT

awk -v want="$words" '{ print; n += NF; if (n >= want) exit }' "$text" > "$work/prose.txt"
got=$(wc -w < "$work/prose.txt")

names=(orth aspell hunspell)
for ((r = 0; r < rounds; r++)); do
  for n in "${names[@]}"; do
    case $n in
      orth) set -- "$orth" list -d "$dicts/orth" ;;
      aspell) set -- aspell list --lang=en --encoding=utf-8 --master="$dicts/aspell/wam.rws" ;;
      hunspell) set -- hunspell -l -i utf-8 -d "$dicts/hunspell/wam" ;;
    esac
    # The commands exit with 1 when they list words.
    /usr/bin/time -f "%e %U %M" -o "$work/$n.t" "$@" < "$work/prose.txt" > "$work/$n.out" || true
    tail -n 1 "$work/$n.t" >> "$work/$n.times"
  done
done

median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }
echo "$got words of text on standard input, $rounds interleaved runs each"
echo
echo "| command | wall s (median) | user s (median) | max RSS MB | lines out |"
echo "|---|---|---|---|---|"
for n in "${names[@]}"; do
  wall=$(cut -d' ' -f1 "$work/$n.times" | median)
  user=$(cut -d' ' -f2 "$work/$n.times" | median)
  rss=$(cut -d' ' -f3 "$work/$n.times" | sort -n | tail -n 1)
  case $n in
    orth) label="orth list" ;;
    aspell) label="aspell list" ;;
    hunspell) label="hunspell -l" ;;
  esac
  printf '| %s | %.2f | %.2f | %.1f | %s |\n' "$label" "$wall" "$user" "$(awk -v k="$rss" 'BEGIN { print k / 1024 }')" \
    "$(wc -l < "$work/$n.out")"
done
