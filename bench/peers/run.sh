#!/usr/bin/env bash
# Runs the peer comparison and writes its tables into bench/RESULTS.md:
# the dictionaries (make-dicts.sh), the text (make-corpus.sh, made once and
# kept in WORK), the in-process table (orth_peer_bench) and the end-to-end
# table (list-e2e.sh), with the machine they ran on and the commands.
#
# Usage: run.sh [BUILD] [WORK]
#   BUILD  a release build tree holding orth and bench/orth_peer_bench
#          (default: build beside the sources)
#   WORK   a folder for the dictionaries and the text
#          (default: $TMPDIR/orth-peer-bench)
# Environment: ROUNDS (default 3) for the in-process table, LIST_ROUNDS
# (default 5) for the end-to-end one.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
work=${2:-${TMPDIR:-/tmp}/orth-peer-bench}
results=$root/bench/RESULTS.md
[ -x "$build/bench/orth_peer_bench" ] || {
  echo "run.sh: $build/bench/orth_peer_bench is missing (needs libhunspell-dev, libnuspell-dev, libaspell-dev)" >&2
  exit 1
}
mkdir -p "$work"

load_before=$(cut -d' ' -f1-3 /proc/loadavg)
"$here/make-dicts.sh" "$work/dicts" /usr/share/dict/american-english "$build/orth" >&2
[ -s "$work/corpus/corpus.txt" ] || "$here/make-corpus.sh" "$work/corpus" >&2
peers=$("$build/bench/orth_peer_bench" --dicts "$work/dicts" --corpus "$work/corpus/corpus.txt" \
  --misspellings "$root/bench/data/misspellings.txt" --rounds "${ROUNDS:-3}")
echo "$peers"
list=$("$here/list-e2e.sh" "$build/orth" "$work/dicts" "$work/corpus/corpus.txt" 1000000 "${LIST_ROUNDS:-5}")
echo "$list"
load_after=$(cut -d' ' -f1-3 /proc/loadavg)

section=$(cat <<SECTION
<!-- results begin: written by bench/peers/run.sh -->
## Results of $(date -u '+%Y-%m-%d %H:%M UTC')

Machine: $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //'), $(nproc) cores,
$(awk '/MemTotal/ { printf "%.0f GiB", $2 / 1048576 }' /proc/meminfo), $(uname -sr); load average
$load_before before, $load_after after (the machine is shared: ratios measured in
one run matter, absolute figures vary).
Peers: $(dpkg-query -W -f='${Package} ${Version}, ' hunspell libnuspell5 aspell aspell-en 2>/dev/null | sed 's/, $//');
vocabulary: $(dpkg-query -W -f='${Package} ${Version}' wamerican 2>/dev/null);
text: the manual pages of $(paste -sd, "$work/corpus/corpus.source" | sed 's/,/, /g').

### In process (bench/peers/peer_bench.cpp)

Check: the text's words, one call each, timed over a second pass. Suggest: each
misspelling of bench/data/misspellings.txt, each call timed alone (in every
round for engines answering in under 5 ms, in the first for the others);
orth at depth -1 with 25 suggestions and the default options (phonetic on in
the second row); first/top-5/anywhere: where the intended word appears. RSS:
the resident set's growth from before the dictionary loaded to after the
work. Figures are medians over the rounds; each engine runs in a process of
its own, the engines interleaved round after round.

$peers

### End to end (bench/peers/list-e2e.sh)

$list

### Commands

    cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo && cmake --build build -j2
    bench/peers/run.sh build $work
    # which runs:
    bench/peers/make-dicts.sh $work/dicts /usr/share/dict/american-english build/orth
    bench/peers/make-corpus.sh $work/corpus
    build/bench/orth_peer_bench --dicts $work/dicts --corpus $work/corpus/corpus.txt \\
        --misspellings bench/data/misspellings.txt --rounds ${ROUNDS:-3}
    bench/peers/list-e2e.sh build/orth $work/dicts $work/corpus/corpus.txt 1000000 ${LIST_ROUNDS:-5}
<!-- results end -->
SECTION
)

if [ -f "$results" ] && grep -q '<!-- results begin' "$results"; then
  awk -v section="$section" '
    /<!-- results begin/ { print section; skip = 1; next }
    /<!-- results end -->/ { skip = 0; next }
    !skip { print }' "$results" > "$results.tmp"
else
  { echo "# Benchmark results"; echo; echo "$section"; } > "$results.tmp"
fi
mv "$results.tmp" "$results"
echo "run.sh: tables written to $results" >&2
