#!/usr/bin/env bash
# Times the PostScript polyline benchmark (bench/ps_polyline.cpp) as whole processes,
# as the peer measurements do, and prints the medians, the ratio of the library to the
# plain formatting program, and the peers' figures for the same workload when the shared
# results table is at hand.
#
# Usage: bench/run_ps.sh [BUILD_DIR] [N] [RUNS]
#   BUILD_DIR  a configured build (default: build); the benchmark is built when missing
#   N          points (default 1000000)
#   RUNS       timed runs per mode after one warm-up run (default 11); the median counts
# ZORVEL_PEERS may name the peers' results.tsv (default: ../shared/bench/results/results.tsv
# beside the repository).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
n=${2:-1000000}
runs=${3:-11}
prog=$build/bench/bench_ps_polyline
if [ ! -x "$prog" ]; then
  cmake --build "$build" --target bench_ps_polyline > /dev/null
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Median wall time in seconds of RUNS runs of one mode.
median() {
  local mode=$1 out=$work/out.$1 times=() t0 t1
  (cd "$work" && "$prog" "$mode" "$out" "$n" > /dev/null) || exit 1  # warm-up
  for _ in $(seq "$runs"); do
    t0=$(date +%s%N)
    (cd "$work" && "$prog" "$mode" "$out" "$n" > /dev/null) || exit 1
    t1=$(date +%s%N)
    times+=($((t1 - t0)))
  done
  printf '%s\n' "${times[@]}" | sort -n | awk -v r="$runs" \
    '{ t[NR] = $1 } END { printf "%.4f", t[int((r + 1) / 2)] / 1e9 }'
}

size() { [ -f "$work/out.$1" ] && stat -c %s "$work/out.$1" || echo 0; }

data=$(median data) && plain=$(median plain) && api=$(median api) || {
  echo "benchmark run failed"
  exit 1
}
echo "PostScript polyline of $n points (W1), median wall time of $runs runs"
printf '  %-6s %8s s  %s\n' data "$data" "computing the points only"
printf '  %-6s %8s s  %s (%s bytes)\n' plain "$plain" \
  "formatting and writing the same integers" "$(size plain)"
printf '  %-6s %8s s  %s (%s bytes)\n' api "$api" \
  "metafl, zorini, strtpt/connpt per point, zorfin" "$(size api)"
awk -v a="$api" -v p="$plain" -v d="$data" 'BEGIN {
  printf "  api / plain = %.2f (target: at most 2)\n", a / p
  if (p > d) printf "  without the data: (api - data) / (plain - data) = %.2f\n", (a - d) / (p - d)
}'

peers=${ZORVEL_PEERS:-$root/../shared/bench/results/results.tsv}
if [ "$n" = 1000000 ] && [ -f "$peers" ]; then
  echo "Peers, W1 N = 1e6 PS (median wall s, from $(basename "$peers")):"
  awk -F'\t' -v a="$api" '$2 == "W1_1e6" && $3 == "ps" {
      printf "  %-18s %7.3f s  (ours: %.2fx)\n", $4, $6, a / $6 }' "$peers"
fi
