#!/usr/bin/env bash
# Runs each fuzz target for a given time from its seeds, under the
# sanitizers it was built with (AddressSanitizer with leak detection and
# UndefinedBehaviorSanitizer). Fails when any target finds a crash, a leak, a
# hang (an input running over 20 s) or a broken invariant; the input that did
# it is kept under the output folder and its path printed.
#
# Usage: fuzz/run.sh BUILD_DIR [SECONDS_PER_TARGET] [TARGET...]
#   BUILD_DIR  a tree configured with -DORTH_FUZZ=ON -DORTH_SANITIZE=ON (clang)
#   targets    clex tlex userlist lexsq block api text pipe settings (default: all)
# Environment: ORTH_FUZZ_CORPUS=DIR keeps each target's grown corpus in
# DIR/<target> across runs (default: a temporary folder, dropped);
# ORTH_FUZZ_OUT=DIR is where failing inputs go (default: BUILD_DIR/fuzz-out);
# ORTH_FUZZ_JOBS=N runs N targets at a time (default: one per core).
set -uo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
build="${1:?usage: fuzz/run.sh BUILD_DIR [SECONDS] [TARGET...]}"
seconds="${2:-30}"
shift $(( $# >= 2 ? 2 : 1 ))
targets=("$@")
[ ${#targets[@]} -eq 0 ] && targets=(clex tlex userlist lexsq block api text pipe settings)
out="${ORTH_FUZZ_OUT:-$build/fuzz-out}"
mkdir -p "$out"
scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT

# The targets keep to their scratch folders; HOME and XDG_CONFIG_HOME point
# there too, so nothing reaches the user's own configuration.
export HOME="$scratch/home" XDG_CONFIG_HOME="$scratch/home/.config"
mkdir -p "$XDG_CONFIG_HOME"
export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
# One target: its summary line on success; its log's key lines and a
# failure mark in $scratch/failed-<target> otherwise.
run_target() {
  local t="$1" bin="$build/fuzz/fuzz_$1" corpus log
  if [ ! -x "$bin" ]; then
    echo "fuzz: no $bin (build it with -DORTH_FUZZ=ON)" >&2
    touch "$scratch/failed-$t"
    return
  fi
  corpus="${ORTH_FUZZ_CORPUS:+$ORTH_FUZZ_CORPUS/$t}"
  corpus="${corpus:-$scratch/corpus-$t}"
  mkdir -p "$corpus" "$scratch/tmp-$t"
  log="$out/$t.log"
  # TMPDIR: the target's scratch files go to a folder of this run.
  if TMPDIR="$scratch/tmp-$t" "$bin" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2560 \
       -artifact_prefix="$out/$t-" "$corpus" "$here/seeds/$t" > "$log" 2>&1; then
    echo "fuzz $t: $(grep -E '^#[0-9]+.*DONE' "$log" | tail -1 | sed 's/^#\([0-9]*\).*cov: \([0-9]*\).*/\1 runs, coverage \2/')"
  else
    echo "fuzz $t: FAILED, see $log" >&2
    grep -E 'ERROR|SUMMARY|fuzz check failed|runtime error|Test unit written' "$log" | head -8 >&2
    touch "$scratch/failed-$t"
  fi
}

# ORTH_FUZZ_JOBS targets at a time (default: the number of cores).
jobs="${ORTH_FUZZ_JOBS:-$(nproc 2>/dev/null || echo 1)}"
for t in "${targets[@]}"; do
  while [ "$(jobs -rp | wc -l)" -ge "$jobs" ]; do wait -n || true; done
  run_target "$t" &
done
wait
failed=()
for t in "${targets[@]}"; do [ -e "$scratch/failed-$t" ] && failed+=("$t"); done
if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzz: failed: ${failed[*]}" >&2
  exit 1
fi
echo "fuzz: ${#targets[@]} targets passed, ${seconds} s each"
