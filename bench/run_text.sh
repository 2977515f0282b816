#!/usr/bin/env bash
# Times the text benchmark (bench/text_labels.cpp, workload W3: 20,000 labels on one PS
# page) as whole processes, as the peer measurements do, and prints the medians and output
# sizes per font mode beside the peers' W3 figures when the shared results are at hand.
#
# Usage: bench/run_text.sh [BUILD_DIR] [RUNS] [MODES]
#   BUILD_DIR  a configured build (default: build); the benchmark is built when missing
#   RUNS       timed runs per mode after one warm-up run (default 11); the median counts
#   MODES      font modes (default "zoralf complx helve hwfont number mixalf")
# ZORVEL_PEERS may name the peers' results.tsv (default: ../shared/bench/results/results.tsv
# beside the repository).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
runs=${2:-11}
modes=${3:-zoralf complx helve hwfont number mixalf}
prog=$build/bench/bench_text_labels
if [ ! -x "$prog" ]; then
  cmake --build "$build" --target bench_text_labels > /dev/null
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

median() {
  local mode=$1 out=$work/w3_$1.ps times=() t0 t1
  (cd "$work" && "$prog" "$mode" "$out" > /dev/null)  # warm-up
  for _ in $(seq "$runs"); do
    t0=$(date +%s%N)
    (cd "$work" && "$prog" "$mode" "$out" > /dev/null)
    t1=$(date +%s%N)
    times+=($((t1 - t0)))
  done
  printf '%s\n' "${times[@]}" | sort -n | awk -v r="$runs" \
    '{ t[NR] = $1 } END { printf "%.4f", t[int((r + 1) / 2)] / 1e9 }'
}

human() {
  awk -v b="$1" 'BEGIN { if (b >= 1048576) printf "%.2f MB", b / 1048576;
                         else printf "%.0f KB", b / 1024 }'
}

echo "W3 20,000 text labels, PS, median of $runs runs"
printf '%-22s %10s %12s\n' "zorvel mode" "wall s" "output"
for mode in $modes; do
  t=$(median "$mode")
  printf '%-22s %10s %12s\n' "$mode" "$t" "$(human "$(stat -c %s "$work/w3_$mode.ps")")"
done

peers=${ZORVEL_PEERS:-$root/../shared/bench/results/results.tsv}
if [ -f "$peers" ]; then
  echo
  echo "peers (W3, ps):"
  awk -F'\t' 'NR == 1 { for (i = 1; i <= NF; i++) col[$i] = i; next }
    $col["workload"] == "W3" && $col["format"] == "ps" {
      printf "%-22s %10s\n", $col["peer"], $col["wall_median_s"] }' "$peers" 2>/dev/null || true
fi
