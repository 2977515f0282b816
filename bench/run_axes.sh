#!/usr/bin/env bash
# Times bench/axis_systems.cpp (1,000 labelled axis systems on one PS page) as whole
# processes and prints the median per font mode, with the time per axis system beside the
# per-plot times of workload W2 (200 small plots with one axis system each) of the peers.
#
# Usage: bench/run_axes.sh [BUILD_DIR] [RUNS] [COUNT]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
runs=${2:-7}
count=${3:-1000}
prog=$build/bench/bench_axis_systems
if [ ! -x "$prog" ]; then
  cmake --build "$build" --target bench_axis_systems > /dev/null
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

median() {
  local mode=$1 out=$work/axes_$1.ps times=() t0 t1
  "$prog" "$mode" "$count" "$out" > /dev/null  # warm-up
  for _ in $(seq "$runs"); do
    t0=$(date +%s%N)
    "$prog" "$mode" "$count" "$out" > /dev/null
    t1=$(date +%s%N)
    times+=($((t1 - t0)))
  done
  printf '%s\n' "${times[@]}" | sort -n | awk -v r="$runs" \
    '{ t[NR] = $1 } END { printf "%.4f", t[int((r + 1) / 2)] / 1e9 }'
}

echo "$count axis systems with labels, names and a title on one PS page, median of $runs runs"
printf '%-10s %10s %16s %12s\n' "mode" "wall s" "ms per system" "output"
for mode in zoralf helve auto; do
  t=$(median "$mode")
  printf '%-10s %10s %16.3f %12s\n' "$mode" "$t" "$(awk -v t="$t" -v n="$count" \
    'BEGIN { print t * 1000 / n }')" "$(stat -c %s "$work/axes_$mode.ps") B"
done

peers=${ZORVEL_PEERS:-$root/../shared/bench/results/results.tsv}
if [ -f "$peers" ]; then
  echo
  echo "peers, W2 (200 whole plots, ps): ms per plot"
  awk -F'\t' 'NR == 1 { for (i = 1; i <= NF; i++) col[$i] = i; next }
    $col["workload"] == "W2" && $col["format"] == "ps" {
      printf "%-22s %10.3f\n", $col["peer"], $col["wall_median_s"] * 1000 / 200 }' \
    "$peers" 2>/dev/null || true
fi
