#!/usr/bin/env bash
# Runs each fuzz target for a given time from its seeds, under the
# sanitizers it was built with (AddressSanitizer with leak detection and
# UndefinedBehaviorSanitizer). Fails when any target finds a crash, a leak, a
# hang (an input running over 20 s) or a broken invariant; the input that did
# it is kept under the output folder and its path printed.
#
# Usage: fuzz/run.sh BUILD_DIR [SECONDS_PER_TARGET] [TARGET...]
#   BUILD_DIR  a tree configured with -DORTH_FUZZ=ON -DORTH_SANITIZE=ON (clang)
#   targets    clex tlex userlist lexsq block api text settings (default: all)
# Environment: ORTH_FUZZ_CORPUS=DIR keeps each target's grown corpus in
# DIR/<target> across runs (default: a temporary folder, dropped);
# ORTH_FUZZ_OUT=DIR is where failing inputs go (default: BUILD_DIR/fuzz-out).
set -uo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
build="${1:?usage: fuzz/run.sh BUILD_DIR [SECONDS] [TARGET...]}"
seconds="${2:-30}"
shift $(( $# >= 2 ? 2 : 1 ))
targets=("$@")
[ ${#targets[@]} -eq 0 ] && targets=(clex tlex userlist lexsq block api text settings)
out="${ORTH_FUZZ_OUT:-$build/fuzz-out}"
mkdir -p "$out"
scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT

export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
failed=()
for t in "${targets[@]}"; do
  bin="$build/fuzz/fuzz_$t"
  if [ ! -x "$bin" ]; then
    echo "fuzz: no $bin (build it with -DORTH_FUZZ=ON)" >&2
    failed+=("$t")
    continue
  fi
  corpus="${ORTH_FUZZ_CORPUS:+$ORTH_FUZZ_CORPUS/$t}"
  corpus="${corpus:-$scratch/corpus-$t}"
  mkdir -p "$corpus"
  log="$out/$t.log"
  # TMPDIR: the target's scratch files go to a folder of this run.
  if TMPDIR="$scratch" "$bin" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2560 \
       -artifact_prefix="$out/$t-" "$corpus" "$here/seeds/$t" > "$log" 2>&1; then
    echo "fuzz $t: $(grep -E '^#[0-9]+.*DONE' "$log" | tail -1 | sed 's/^#\([0-9]*\).*cov: \([0-9]*\).*/\1 runs, coverage \2/')"
  else
    echo "fuzz $t: FAILED, see $log" >&2
    grep -E 'ERROR|SUMMARY|fuzz check failed|runtime error|Test unit written' "$log" | head -8 >&2
    failed+=("$t")
  fi
done
if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzz: failed: ${failed[*]}" >&2
  exit 1
fi
echo "fuzz: ${#targets[@]} targets passed, ${seconds} s each"
